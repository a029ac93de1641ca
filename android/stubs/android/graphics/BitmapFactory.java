package android.graphics;

import java.io.InputStream;

public class BitmapFactory {
    public static Bitmap decodeFile(String pathName, Options opts) {
        throw new UnsupportedOperationException();
    }
    public static Bitmap decodeStream(InputStream is) { throw new UnsupportedOperationException(); }
    public static class Options {
        public boolean inJustDecodeBounds;
        public boolean inScaled;
        public int inSampleSize;
        public Bitmap.Config inPreferredConfig;
        public int outWidth;
        public int outHeight;
        public Options() {}
    }
}
