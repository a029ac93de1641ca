package velmora.host;

/** Makes rain fall on the water. The positions and sizes of the drops are the same in every run. */
final class Rain {
    private double dropsDue;
    private int seed = 1;

    /** Raises the ripples of the drops that fall in `elapsed` nanoseconds. */
    void fall(WaterDriver water, float dropsPerSecond, float fingerStrength, long elapsed) {
        dropsDue += dropsPerSecond * (elapsed / 1e9);
        for (; dropsDue >= 1.0; dropsDue -= 1.0) {
            double x = chance() * water.screenWidth;
            double y = chance() * water.screenHeight;
            // A drop's ripple is smaller than a finger's ripple.
            water.ripple(x, y, (float) (0.15 + 0.35 * chance()) * fingerStrength);
        }
    }

    /**
     * Returns the next pseudo-random number in [0, 1). Does not use the C library's rand. The
     * solver uses rand, and rain must not change the random numbers of the solver.
     */
    private double chance() {
        seed = seed * 1664525 + 1013904223;
        return (double) (seed >>> 8) / (1 << 24);
    }
}
