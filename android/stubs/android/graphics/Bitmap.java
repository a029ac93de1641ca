package android.graphics;

import android.os.Parcelable;
import java.io.OutputStream;
import java.nio.Buffer;

public final class Bitmap implements Parcelable {
    public static Bitmap createBitmap(int width, int height, Config config) {
        throw new UnsupportedOperationException();
    }
    public int getWidth() { throw new UnsupportedOperationException(); }
    public int getHeight() { throw new UnsupportedOperationException(); }
    public void setHasAlpha(boolean hasAlpha) { throw new UnsupportedOperationException(); }
    public void copyPixelsFromBuffer(Buffer src) { throw new UnsupportedOperationException(); }
    public boolean compress(CompressFormat format, int quality, OutputStream stream) {
        throw new UnsupportedOperationException();
    }
    public enum Config { ALPHA_8, RGB_565, ARGB_4444, ARGB_8888, RGBA_F16, HARDWARE }
    public enum CompressFormat { JPEG, PNG, WEBP }
}
