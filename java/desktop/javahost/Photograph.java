package javahost;

import java.awt.Graphics2D;
import java.awt.RenderingHints;
import java.awt.geom.AffineTransform;
import java.awt.image.BufferedImage;
import java.io.EOFException;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Iterator;
import javax.imageio.ImageIO;
import javax.imageio.ImageReadParam;
import javax.imageio.ImageReader;
import javax.imageio.stream.ImageInputStream;
import velmora.host.HostException;

/** Reads image files, turns them upright and crops them to the screen. */
final class Photograph {
    /** Maximum number of pixels of an image. No camera takes larger images. */
    private static final long MAX_PIXELS = 100_000_000;
    private static final byte[] EXIF = "Exif\0\0".getBytes(StandardCharsets.ISO_8859_1);
    private static final int START_OF_JPEG = 0xFFD8;
    private static final int START_OF_SCAN = 0xFFDA;
    private static final int NOTES = 0xFFE1;
    private static final int ORIENTATION_TAG = 0x112;

    private Photograph() {}

    /**
     * Reads an image, turns it upright, scales it to cover the screen and crops it around its
     * centre.
     */
    static RgbaImage read(Path file, int width, int height) {
        if (!Files.exists(file)) {
            throw new HostException(file + ": the image file does not exist; check the path");
        }
        try (ImageInputStream stream = ImageIO.createImageInputStream(file.toFile())) {
            Iterator<ImageReader> readers = stream == null ? null : ImageIO.getImageReaders(stream);
            if (readers != null && readers.hasNext()) {
                ImageReader reader = readers.next();
                reader.setInput(stream);
                return RgbaImage.of(read(reader, file, width, height));
            }
        } catch (HostException tooLarge) {
            throw tooLarge;
        } catch (IOException | RuntimeException | OutOfMemoryError broken) {
            // Decoders throw many kinds of exceptions for a damaged file. The statement below
            // reports the same error for all of them.
        }
        throw new HostException(
            file + ": cannot be read as an image; use a PNG, JPEG, BMP or GIF file");
    }

    private static BufferedImage read(ImageReader reader, Path file, int width, int height)
        throws IOException {
        int columns = reader.getWidth(0);
        int rows = reader.getHeight(0);
        if ((long) columns * rows > MAX_PIXELS) {
            throw new HostException(
                file + ": expected at most 100 million pixels, found " + columns + " x " + rows);
        }
        // Read only every n-th row and column of a large image; n is `spare`. Enough pixels remain
        // to cover the screen, even if the image is turned by 90 degrees.
        int spare = Math.max(1, Math.min(columns, rows) / Math.max(width, height));
        ImageReadParam sparse = reader.getDefaultReadParam();
        sparse.setSourceSubsampling(spare, spare, 0, 0);
        BufferedImage image = reader.read(0, sparse);
        int orientation = 1;
        try {
            orientation = orientation((ImageInputStream) reader.getInput());
        } catch (EOFException | IndexOutOfBoundsException ignored) {
            // Treat an image with damaged EXIF data as upright.
        }
        return fill(image, orientation, width, height);
    }

    private static BufferedImage fill(BufferedImage image, int orientation, int width, int height) {
        AffineTransform upright = upright(orientation, image.getWidth(), image.getHeight());
        boolean turned = orientation > 4;
        double columns = turned ? image.getHeight() : image.getWidth();
        double rows = turned ? image.getWidth() : image.getHeight();
        double scale = Math.max(width / columns, height / rows);
        AffineTransform covering = AffineTransform.getTranslateInstance(
            (width - columns * scale) / 2, (height - rows * scale) / 2);
        covering.scale(scale, scale);
        covering.concatenate(upright);
        BufferedImage filled = new BufferedImage(width, height, BufferedImage.TYPE_INT_RGB);
        Graphics2D graphics = filled.createGraphics();
        graphics.setRenderingHint(
            RenderingHints.KEY_INTERPOLATION, RenderingHints.VALUE_INTERPOLATION_BILINEAR);
        graphics.drawImage(image, covering, null);
        graphics.dispose();
        return filled;
    }

    /** Returns the transform from pixel positions in the stored image to the upright image. */
    private static AffineTransform upright(int orientation, int width, int height) {
        switch (orientation) {
            case 2:
                return new AffineTransform(-1, 0, 0, 1, width, 0);
            case 3:
                return new AffineTransform(-1, 0, 0, -1, width, height);
            case 4:
                return new AffineTransform(1, 0, 0, -1, 0, height);
            case 5:
                return new AffineTransform(0, 1, 1, 0, 0, 0);
            case 6:
                return new AffineTransform(0, 1, -1, 0, height, 0);
            case 7:
                return new AffineTransform(0, -1, -1, 0, height, width);
            case 8:
                return new AffineTransform(0, -1, 1, 0, 0, width);
            default:
                return new AffineTransform();
        }
    }

    /** Returns the EXIF orientation, 1 to 8. Returns 1 (upright) if the file has no orientation. */
    private static int orientation(ImageInputStream stream) throws IOException {
        stream.seek(0);
        stream.setByteOrder(ByteOrder.BIG_ENDIAN);
        if (stream.readUnsignedShort() != START_OF_JPEG) {
            return 1;
        }
        // A JPEG segment begins with a two-byte marker and a two-byte length. The length counts its
        // own two bytes, but not those of the marker.
        for (int marker; (marker = stream.readUnsignedShort()) != START_OF_SCAN;) {
            byte[] segment = new byte[Math.max(0, stream.readUnsignedShort() - 2)];
            stream.readFully(segment);
            if (marker == NOTES && segment.length > EXIF.length
                && Arrays.equals(EXIF, Arrays.copyOf(segment, EXIF.length))) {
                return orientation(segment);
            }
        }
        return 1;
    }

    /**
     * Reads the orientation from the first EXIF directory. Each directory entry has 12 bytes: tag,
     * type, count and value.
     */
    private static int orientation(byte[] exif) {
        ByteBuffer tags = ByteBuffer.wrap(exif, EXIF.length, exif.length - EXIF.length).slice();
        tags.order(tags.get(0) == 'I' ? ByteOrder.LITTLE_ENDIAN : ByteOrder.BIG_ENDIAN);
        int directory = tags.getInt(4);
        int count = Short.toUnsignedInt(tags.getShort(directory));
        for (int entry = directory + 2; entry < directory + 2 + 12 * count; entry += 12) {
            if (tags.getShort(entry) == ORIENTATION_TAG) {
                return tags.getShort(entry + 8);
            }
        }
        return 1;
    }
}
