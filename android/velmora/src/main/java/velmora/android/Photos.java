package velmora.android;

import android.graphics.Bitmap;
import android.graphics.BitmapFactory;
import android.graphics.Canvas;
import android.graphics.ImageDecoder;
import android.graphics.LinearGradient;
import android.graphics.Matrix;
import android.graphics.Paint;
import android.graphics.Shader;
import android.media.ExifInterface;
import android.os.Build;
import java.io.File;
import java.io.IOException;
import velmora.host.Backgrounds;

/**
 * Makes the backgrounds of a screen from a photo. The library reads the pixels with the CPU, so
 * each background is an opaque software bitmap in the format ARGB_8888.
 */
final class Photos implements Backgrounds {
    /**
     * Factor by which the second background is smaller than the screen. The second background is a
     * gradient without detail, so a low resolution suffices.
     */
    private static final int SECOND_SCALE = 16;

    /** Colours of the gradient that replaces a missing photo, from top to bottom. */
    private static final int[] DUSK = {0xFF1B2A49, 0xFF5B6C8F, 0xFFE8A87C, 0xFF3C5A6B, 0xFF16263A};

    private File photo;

    /** Sets the file of the photo for later backgrounds. If null, a gradient is drawn instead. */
    void setPhoto(File newPhoto) { photo = newPhoto; }

    /** Returns true if the file begins with the header of an image that this device can decode. */
    static boolean canDecode(File photo) { return bounds(photo).outWidth > 0; }

    private static BitmapFactory.Options bounds(File photo) {
        BitmapFactory.Options options = new BitmapFactory.Options();
        options.inJustDecodeBounds = true;
        BitmapFactory.decodeFile(photo.getPath(), options);
        options.inJustDecodeBounds = false;
        return options;
    }

    @Override
    public Bitmap background(int width, int height) {
        Bitmap decoded = null;
        try {
            decoded = photo == null ? null : decode(width, height);
        } catch (IOException | RuntimeException | OutOfMemoryError broken) {
            // A photo that cannot be decoded is replaced by the gradient.
        }
        return decoded == null ? dusk(width, height) : decoded;
    }

    @Override
    public Bitmap secondBackground(int width, int height) {
        return dusk(Math.max(1, width / SECOND_SCALE), Math.max(1, height / SECOND_SCALE));
    }

    private Bitmap decode(int width, int height) throws IOException {
        if (Build.VERSION.SDK_INT >= Build.VERSION_CODES.P) {
            return cover(decodeUpright(width, height), new Matrix(), width, height);
        }
        Bitmap stored = decodeStored(width, height);
        return stored == null ? null : cover(stored, orientation(stored), width, height);
    }

    /** Decodes the photo upright, and no larger than needed to cover the screen. */
    private Bitmap decodeUpright(int width, int height) throws IOException {
        return ImageDecoder.decodeBitmap(
            ImageDecoder.createSource(photo), (decoder, info, source) -> {
                // The library cannot read the pixels of a hardware bitmap.
                decoder.setAllocator(ImageDecoder.ALLOCATOR_SOFTWARE);
                double columns = info.getSize().getWidth();
                double rows = info.getSize().getHeight();
                double scale = Math.min(1.0, Math.max(width / columns, height / rows));
                decoder.setTargetSize(
                    (int) Math.ceil(columns * scale), (int) Math.ceil(rows * scale));
            });
    }

    /**
     * Decodes the photo in its stored orientation, about as large as the screen. Returns null if
     * the file is damaged.
     */
    private Bitmap decodeStored(int width, int height) {
        BitmapFactory.Options options = bounds(photo);
        options.inSampleSize = sampleSize(options.outWidth, options.outHeight, width, height);
        options.inScaled = false;
        options.inPreferredConfig = Bitmap.Config.ARGB_8888;
        return BitmapFactory.decodeFile(photo.getPath(), options);
    }

    /**
     * Returns n, a power of two, for decoding only every n-th row and column of the photo. Enough
     * pixels remain to cover the screen. If the photo is small, n is 1.
     */
    private static int sampleSize(int columns, int rows, int width, int height) {
        int spare = Math.min(columns, rows) / Math.max(width, height);
        return Math.max(1, Integer.highestOneBit(Math.max(1, spare)));
    }

    /** Returns the transform that turns the stored photo upright. */
    private Matrix orientation(Bitmap stored) throws IOException {
        Matrix turn = new Matrix();
        int orientation =
            new ExifInterface(photo.getPath())
                .getAttributeInt(ExifInterface.TAG_ORIENTATION, ExifInterface.ORIENTATION_NORMAL);
        switch (orientation) {
            case ExifInterface.ORIENTATION_FLIP_HORIZONTAL:
                turn.setScale(-1, 1);
                break;
            case ExifInterface.ORIENTATION_ROTATE_180:
                turn.setRotate(180);
                break;
            case ExifInterface.ORIENTATION_FLIP_VERTICAL:
                turn.setScale(1, -1);
                break;
            case ExifInterface.ORIENTATION_TRANSPOSE:
                turn.setRotate(90);
                turn.postScale(-1, 1);
                break;
            case ExifInterface.ORIENTATION_ROTATE_90:
                turn.setRotate(90);
                break;
            case ExifInterface.ORIENTATION_TRANSVERSE:
                turn.setRotate(-90);
                turn.postScale(-1, 1);
                break;
            case ExifInterface.ORIENTATION_ROTATE_270:
                turn.setRotate(-90);
                break;
            default:
                break;
        }
        return turn;
    }

    /** Turns a photo upright, scales it to cover the screen and crops it around its centre. */
    private static Bitmap cover(Bitmap decoded, Matrix turn, int width, int height) {
        float[] corner = {decoded.getWidth(), decoded.getHeight()};
        turn.mapVectors(corner);
        float columns = Math.abs(corner[0]);
        float rows = Math.abs(corner[1]);
        float scale = Math.max(width / columns, height / rows);
        Matrix covering = new Matrix();
        covering.setTranslate(-decoded.getWidth() / 2.0f, -decoded.getHeight() / 2.0f);
        covering.postConcat(turn);
        covering.postScale(scale, scale);
        covering.postTranslate(width / 2.0f, height / 2.0f);
        Bitmap covered = newBitmap(width, height);
        new Canvas(covered).drawBitmap(decoded, covering, new Paint(Paint.FILTER_BITMAP_FLAG));
        return covered;
    }

    private static Bitmap dusk(int width, int height) {
        Bitmap gradient = newBitmap(width, height);
        Paint paint = new Paint();
        paint.setShader(new LinearGradient(0, 0, 0, height, DUSK, null, Shader.TileMode.CLAMP));
        new Canvas(gradient).drawPaint(paint);
        return gradient;
    }

    private static Bitmap newBitmap(int width, int height) {
        Bitmap bitmap = Bitmap.createBitmap(width, height, Bitmap.Config.ARGB_8888);
        bitmap.setHasAlpha(false);
        return bitmap;
    }
}
