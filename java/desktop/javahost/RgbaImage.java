package javahost;

import android.graphics.Bitmap;
import java.awt.image.BufferedImage;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.file.Path;
import javax.imageio.ImageIO;

/** An image of 32-bit RGBA pixels. Rows go from top to bottom and have no padding. */
record RgbaImage(int width, int height, byte[] rgba) {
    static RgbaImage testImage(int width, int height) {
        return new RgbaImage(width, height, HostKit.makeTestImage(width, height));
    }

    void writePng(Path file) throws IOException {
        BufferedImage image = new BufferedImage(width, height, BufferedImage.TYPE_INT_ARGB);
        ByteBuffer pixels = ByteBuffer.wrap(rgba);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                image.setRGB(x, y, Integer.rotateRight(pixels.getInt(), 8));
            }
        }
        ImageIO.write(image, "png", file.toFile());
    }

    Bitmap toBitmap() {
        Bitmap bitmap = Bitmap.createBitmap(width, height, Bitmap.Config.ARGB_8888);
        bitmap.copyPixelsFromBuffer(ByteBuffer.wrap(rgba));
        return bitmap;
    }

    static RgbaImage of(BufferedImage image) {
        ByteBuffer pixels = ByteBuffer.allocate(image.getWidth() * image.getHeight() * 4);
        for (int y = 0; y < image.getHeight(); ++y) {
            for (int x = 0; x < image.getWidth(); ++x) {
                pixels.putInt(Integer.rotateLeft(image.getRGB(x, y), 8));
            }
        }
        return new RgbaImage(image.getWidth(), image.getHeight(), pixels.array());
    }
}
