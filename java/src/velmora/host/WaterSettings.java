package velmora.host;

/**
 * Settings of the water: its grid and the motion of its waves. Lengths are in cells, times in
 * simulation steps. Instances are immutable.
 */
public final class WaterSettings {
    /** Radius, in cells, of the cone that the native method `ripple` raises. */
    static final double CONE_RADIUS = 3.0;

    /** Number of cells along the shorter side of the screen. Cells are square. */
    public final int shortSideCells;

    /** Factor by which each step multiplies the wave velocity, below 1. */
    public final float damping;

    /**
     * Strength with which a height difference accelerates the adjacent cells. Waves travel
     * sqrt(waveSpeed) cells per step. Values above 0.5 are unstable.
     */
    public final float waveSpeed;

    public final int stepsPerSecond;

    /** Radius in cells of the cone that a touch raises. */
    public final double rippleRadius;

    /** Creates the default settings: 90 cells, 60 steps per second and cones of radius 3 cells. */
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
