package android.graphics;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;

/**
 * Replaces Android's Bitmap class on a desktop JVM. It has those methods of Bitmap that a host of
 * the library uses. The desktop version of the jnigraphics library reads the fields of this class.
 */
public final class Bitmap {
    /**
     * Pixel formats. The bytes of an ARGB_8888 pixel are red, green, blue and alpha, in this order.
     */
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

    /** Copies pixel rows, from top to bottom. Reads from the buffer's current position. */
    public void copyPixelsFromBuffer(ByteBuffer source) {
        pixels.duplicate().put(source.slice().limit(pixels.capacity()));
    }

    /** Frees the pixels. Afterwards, native code cannot lock them. */
    public void recycle() { pixels = null; }

    /**
     * Tells the desktop version of the jnigraphics library that bitmaps are objects of this class.
     */
    private static native void readBitmapsThroughJni();
}
