package android.view;

import android.graphics.Bitmap;
import android.os.Handler;

public final class PixelCopy {
    public static final int SUCCESS = 0;
    public static void request(SurfaceView source, Bitmap dest,
        OnPixelCopyFinishedListener listener, Handler listenerThread) {
        throw new UnsupportedOperationException();
    }
    public interface OnPixelCopyFinishedListener {
        void onPixelCopyFinished(int copyResult);
    }
}
