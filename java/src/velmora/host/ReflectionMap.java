package velmora.host;

import android.graphics.Bitmap;
import java.nio.ByteBuffer;

/**
 * Computes the reflection map of the water: a soft sky with light lines like those on the floor of
 * a pool.
 */
public final class ReflectionMap {
    private static final int SIZE = 256;
    private static final double[] DEPTH = {0.16, 0.30, 0.42};
    private static final double[] SKY = {0.70, 0.86, 1.00};
    private static final double[] SUN = {1.00, 0.98, 0.92};

    /**
     * Upper bound of the arguments u and v of `caustic`. Across the map, each argument grows from 0
     * to this value.
     */
    private static final double FOLDS = 14.0;

    private ReflectionMap() {}

    /** Computes the map. */
    public static Bitmap makeBitmap() {
        ByteBuffer rgba = ByteBuffer.allocate(SIZE * SIZE * 4);
        for (int y = 0; y < SIZE; ++y) {
            for (int x = 0; x < SIZE; ++x) {
                double[] color = colorAt((x + 0.5) / SIZE, (y + 0.5) / SIZE);
                for (double channel : color) {
                    rgba.put((byte) Math.round(clamp(channel) * 255.0));
                }
                rgba.put((byte) 255);
            }
        }
        rgba.rewind();
        Bitmap bitmap = Bitmap.createBitmap(SIZE, SIZE, Bitmap.Config.ARGB_8888);
        bitmap.copyPixelsFromBuffer(rgba);
        return bitmap;
    }

    private static double[] colorAt(double u, double v) {
        double rise = 0.5 - 0.5 * Math.cos(3.14159265 * clamp(u * 0.6 + v * 0.4));
        double distance = Math.hypot(u - 0.68, v - 0.36);
        double glow = Math.exp(-distance * distance / 0.02);
        double[] light = mix(mix(DEPTH, SKY, rise), SUN, Math.min(1.0, glow));
        return mix(light, SUN, 0.6 * caustic(FOLDS * u, FOLDS * v));
    }

    /**
     * Returns the brightness of caustic light, 0 to 1. The light is bright where the folds of a
     * wavy surface are close together.
     */
    private static double caustic(double u, double v) {
        double x = u;
        double y = v;
        double light = 0.0;
        for (int fold = 1; fold <= 4; ++fold) {
            double bent = x + 0.35 * Math.sin(2.1 * y + 1.7 * fold);
            y += 0.35 * Math.sin(2.3 * x - 1.3 * fold);
            x = bent;
            light += Math.exp(-6.0 * Math.abs(Math.sin(x + y)));
        }
        return light / 4.0;
    }

    private static double[] mix(double[] from, double[] to, double weight) {
        double[] mixed = new double[from.length];
        for (int channel = 0; channel < mixed.length; ++channel) {
            mixed[channel] = from[channel] + (to[channel] - from[channel]) * weight;
        }
        return mixed;
    }

    private static double clamp(double value) { return Math.max(0.0, Math.min(value, 1.0)); }
}
