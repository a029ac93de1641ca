package velmora.host;

/** Drops that fall by themselves, the same drops in every run. */
final class Rain {
    private double dropsDue;
    private int seed = 1;

    /** Lets the drops of so many nanoseconds fall on the water. */
    void fall(WaterDriver water, float dropsPerSecond, float fingerStrength, long elapsed) {
        dropsDue += dropsPerSecond * (elapsed / 1e9);
        for (; dropsDue >= 1.0; dropsDue -= 1.0) {
            double x = chance() * water.screenWidth;
            double y = chance() * water.screenHeight;
            // Drops are smaller than a finger.
            water.ripple(x, y, (float) (0.15 + 0.35 * chance()) * fingerStrength);
        }
    }

    /** Returns the next number from 0 to 1. The solver alone may use the C library's rand. */
    private double chance() {
        seed = seed * 1664525 + 1013904223;
        return (double) (seed >>> 8) / (1 << 24);
    }
}
