package velmora.host;

/** Grid and motion of the water. Lengths are in cells, times in steps. Instances do not change. */
public final class WaterSettings {
    /** Radius in cells of the cone that the library's ripple raises. */
    static final double CONE_RADIUS = 3.0;

    /** Cells along the shorter side of the screen. Cells are square. */
    public final int shortSideCells;

    /** Factor of the velocity per step, below 1. */
    public final float damping;

    /** Weight of the neighbours' pull, stable up to 0.5. Waves run sqrt(waveSpeed) cells a step. */
    public final float waveSpeed;

    public final int stepsPerSecond;

    /** Radius in cells of the cone that a touch raises. */
    public final double rippleRadius;

    /** The defaults: 90 cells, 60 steps a second and cones of 3 cells. */
    public WaterSettings() { this(90, 0.97f, 0.3f, 60, CONE_RADIUS); }

    WaterSettings(int shortSideCells, float damping, float waveSpeed, int stepsPerSecond,
        double rippleRadius) {
        this.shortSideCells = shortSideCells;
        this.damping = damping;
        this.waveSpeed = waveSpeed;
        this.stepsPerSecond = stepsPerSecond;
        this.rippleRadius = rippleRadius;
    }
}
