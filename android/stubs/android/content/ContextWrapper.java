package android.content;

import android.content.res.AssetManager;
import android.content.res.Resources;
import java.io.File;

public class ContextWrapper extends Context {
    public ContextWrapper(Context base) {}
    public File getFilesDir() { throw new UnsupportedOperationException(); }
    public File getCacheDir() { throw new UnsupportedOperationException(); }
    public String getPackageName() { throw new UnsupportedOperationException(); }
    public AssetManager getAssets() { throw new UnsupportedOperationException(); }
    public Resources getResources() { throw new UnsupportedOperationException(); }
    public ContentResolver getContentResolver() { throw new UnsupportedOperationException(); }
    public void startActivity(Intent intent) { throw new UnsupportedOperationException(); }
}
