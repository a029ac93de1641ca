package velmora.host;

/** Grid and motion of the water. Lengths are in cells, times in steps. Instances are immutable. */
public final class WaterSettings {
    /** Radius in cells of the cone that the library's ripple raises. */
    static final double CONE_RADIUS = 3.0;

    /** Cells along the shorter side of the screen. Cells are square. */
    public final int shortSideCells;

    /** Factor of the velocity per step, below 1. */
    public final float damping;

    /**
     * Weight of the height difference to the adjacent cells. Waves travel sqrt(waveSpeed) cells per
     * step. Stable up to 0.5.
     */
    public final float waveSpeed;

    public final int stepsPerSecond;

    /** Radius in cells of the cone that a touch raises. */
    public final double rippleRadius;

    /** Creates the defaults: 90 cells, 60 steps per second and cones of 3 cells. */
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
