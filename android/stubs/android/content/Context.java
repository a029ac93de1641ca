package android.content;

import android.content.res.AssetManager;
import android.content.res.Resources;
import java.io.File;

public abstract class Context {
    public abstract File getFilesDir();
    public abstract File getCacheDir();
    public abstract String getPackageName();
    public abstract AssetManager getAssets();
    public abstract Resources getResources();
    public abstract ContentResolver getContentResolver();
    public abstract void startActivity(Intent intent);
    public final String getString(int resId, Object... formatArgs) {
        throw new UnsupportedOperationException();
    }
    public final String getString(int resId) { throw new UnsupportedOperationException(); }
}
