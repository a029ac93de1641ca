package android.graphics;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;

/**
 * Stand-in for the platform's bitmap, as far as a host of the library uses it. The stand-in library
 * jnigraphics reads the fields; a device's own class keeps its pixels outside the Java heap too.
 */
public final class Bitmap {
    /** Pixel formats; an ARGB_8888 pixel is the four bytes red, green, blue, alpha in memory. */
    public enum Config {
        ALPHA_8(8, 1),
        RGB_565(4, 2),
        ARGB_8888(1, 4);

        private final int nativeFormat;
        private final int bytesPerPixel;

        Config(int nativeFormat, int bytesPerPixel) {
            this.nativeFormat = nativeFormat;
            this.bytesPerPixel = bytesPerPixel;
        }
    }

    static {
        System.loadLibrary("jnigraphics");
        readBitmapsThroughJni();
    }

    private final int width;
    private final int height;
    private final int rowBytes;
    private final int format;
    private ByteBuffer pixels;

    private Bitmap(int width, int height, Config config) {
        this.width = width;
        this.height = height;
        rowBytes = width * config.bytesPerPixel;
        format = config.nativeFormat;
        pixels = ByteBuffer.allocateDirect(rowBytes * height).order(ByteOrder.nativeOrder());
    }

    public static Bitmap createBitmap(int width, int height, Config config) {
        return new Bitmap(width, height, config);
    }

    public int getWidth() { return width; }

    public int getHeight() { return height; }

    public int getRowBytes() { return rowBytes; }

    /** Takes the rows from the buffer's position on, top to bottom. */
    public void copyPixelsFromBuffer(ByteBuffer source) {
        pixels.duplicate().put(source.slice().limit(pixels.capacity()));
    }

    /** Gives the pixels back; native code is refused them from now on. */
    public void recycle() { pixels = null; }

    /** From now on each bitmap that native code is handed is an object of this class. */
    private static native void readBitmapsThroughJni();
}
