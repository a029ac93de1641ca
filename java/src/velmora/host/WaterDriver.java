package velmora.host;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * The water of one screen: two grids, the mesh arrays and the heights attribute. The library works
 * on these arrays. They are allocated once, so that no frame allocates memory.
 *
 * <p>The cell in column x and row y of the grid is at (x / columns, y / rows) of the screen, y
 * down. Along each side, the mesh has one vertex more than the grid has cells. The extra vertices
 * repeat the last cell, which is part of the fixed border.
 */
final class WaterDriver {
    /**
     * Number of mesh units, the unit of vertex positions, along the shorter side of the screen. A
     * unit has the same length on both axes.
     */
    private static final int SHORT_SIDE_MESH_UNITS = 16;

    private static final int MAX_VERTICES = 65536;

    /**
     * Minimum number of cells along a side. With this minimum, the cone of a ripple fits between
     * the border cells, which never change.
     */
    private static final int MIN_CELLS = 8;

    private static final int MAX_SHORT_SIDE_CELLS = 254;

    /** Duration of one step, in nanoseconds multiplied by the steps per second. */
    private static final long STEP_TIME = 1_000_000_000;

    /** Maximum time that one call of advance simulates, in frames of 1/60 s. */
    private static final long MAX_TIME_AT_ONCE = 4;

    /**
     * Height of the sum of the cones in raiseWideCone, as a multiple of one cone's height: 2 pi /
     * (3 sqrt 3). This is the volume of a cone of radius 1 and height 1, divided by the lattice
     * area per point if the spacing is 1.
     */
    private static final double CONE_OVERLAP = 1.2092;

    /**
     * Distance between two rows of a triangular lattice, divided by the distance between its
     * points.
     */
    private static final double LATTICE_ROW = 0.8660254;

    /**
     * Factor by which the drawn mesh is larger than the screen. With this factor, the edges of the
     * background appear at the edges of the screen: the viewer's eye is 30 mesh units in front of
     * the mesh, and the background is 30.9 units behind the mesh.
     */
    static final float MESH_OVERHANG = 1.015f;

    final int screenWidth;
    final int screenHeight;

    final int columns;
    final int rows;
    final int meshSizeWidth;
    final int meshSizeHeight;
    final int numDetailsWidth;
    final int numDetailsHeight;
    final float[] positions;
    final short[] indices;

    /**
     * Three heights per vertex: of the vertex, of its right neighbour and of its upper neighbour.
     */
    final float[] heights;

    private final NativeForVelmora velmora;
    private WaterSettings settings;
    private final float[] velocity;
    private final float[] height;
    private boolean idle = true;
    private long pendingTime;

    WaterDriver(
        NativeForVelmora velmora, int screenWidth, int screenHeight, WaterSettings settings) {
        this.velmora = velmora;
        this.screenWidth = screenWidth;
        this.screenHeight = screenHeight;
        this.settings = settings;
        int shortSide =
            Math.max(MIN_CELLS, Math.min(settings.shortSideCells, MAX_SHORT_SIDE_CELLS));
        int longSide = MAX_VERTICES / (shortSide + 1) - 1;
        columns = Math.min(scaled(shortSide, screenWidth, screenHeight), longSide);
        rows = Math.min(scaled(shortSide, screenHeight, screenWidth), longSide);
        numDetailsWidth = columns + 1;
        numDetailsHeight = rows + 1;
        meshSizeWidth = scaled(SHORT_SIDE_MESH_UNITS, screenWidth, screenHeight);
        meshSizeHeight = scaled(SHORT_SIDE_MESH_UNITS, screenHeight, screenWidth);

        int vertices = numDetailsWidth * numDetailsHeight;
        velocity = new float[columns * rows];
        height = new float[columns * rows];
        positions = new float[vertices * 3];
        heights = new float[vertices * 3];
        indices = new short[columns * rows * 6];
        velmora.initWaters(positions, indices, vertices, meshSizeWidth, meshSizeHeight,
            numDetailsWidth, numDetailsHeight);
    }

    private static int scaled(int shortSide, int side, int otherSide) {
        double aspect = Math.max(1.0, (double) side / otherSide);
        return (int) Math.round(Math.min(shortSide * aspect, MAX_VERTICES));
    }

    /**
     * Applies settings while the waves continue. If the settings need another grid, changes nothing
     * and returns false.
     */
    boolean adopt(WaterSettings changed) {
        boolean fits = changed.shortSideCells == settings.shortSideCells;
        settings = fits ? changed : settings;
        return fits;
    }

    /**
     * Copies the waves of another water on the same screen. The other water can have a different
     * grid and step rate.
     */
    void resampleWaves(WaterDriver from) {
        resample(from, from.height, height, 1.0f);
        resample(from, from.velocity, velocity,
            (float) from.settings.stepsPerSecond / settings.stepsPerSecond);
        idle = from.idle;
        if (settings.stepsPerSecond == from.settings.stepsPerSecond) {
            pendingTime = from.pendingTime;
        }
        buildHeights();
    }

    private void resample(WaterDriver from, float[] source, float[] target, float factor) {
        for (int row = 1; row < rows - 1; ++row) {
            for (int column = 1; column < columns - 1; ++column) {
                double x = (double) column * from.columns / columns;
                double y = (double) row * from.rows / rows;
                target[row * columns + column] = factor * from.interpolate(source, x, y);
            }
        }
    }

    /**
     * Returns the value of a grid at a position in cells, interpolated between four cells. Beyond
     * the last cell, returns the value of the last cell.
     */
    private float interpolate(float[] grid, double x, double y) {
        int left = Math.min((int) x, columns - 2);
        int top = Math.min((int) y, rows - 2);
        float weightX = (float) Math.min(1.0, x - left);
        float weightY = (float) Math.min(1.0, y - top);
        int cell = top * columns + left;
        float above = mix(grid[cell], grid[cell + 1], weightX);
        float below = mix(grid[cell + columns], grid[cell + columns + 1], weightX);
        return mix(above, below, weightY);
    }

    /**
     * Interpolates with the same rounding as std::lerp, so that this host and the C++ host compute
     * the same waves.
     */
    private static float mix(float from, float to, float weight) {
        if (from <= 0 && to >= 0 || from >= 0 && to <= 0) {
            return weight * to + (1 - weight) * from;
        }
        if (weight == 1) {
            return to;
        }
        float mixed = from + weight * (to - from);
        return to > from ? Math.min(mixed, to) : Math.max(mixed, to);
    }

    /** Returns true while a wave moves. */
    boolean moves() { return !idle; }

    /** Raises a cone at a position in screen pixels, y down. The water is then no longer idle. */
    void ripple(double x, double y, float strength) {
        double radius = settings.rippleRadius;
        if (radius <= WaterSettings.CONE_RADIUS) {
            // The library raises only cones of radius CONE_RADIUS. Instead of the smaller cone,
            // raise a lower cone of this radius that has the same volume.
            double flatter =
                radius * radius / (WaterSettings.CONE_RADIUS * WaterSettings.CONE_RADIUS);
            raiseCone(x, y, (float) (strength * flatter));
        } else {
            raiseWideCone(x, y, strength);
        }
        idle = false;
    }

    /**
     * Raises several of the library's cones on a triangular lattice. Their sum is one wide cone.
     */
    private void raiseWideCone(double x, double y, float strength) {
        double spacing = WaterSettings.CONE_RADIUS * (double) screenWidth / columns;
        double width = settings.rippleRadius / WaterSettings.CONE_RADIUS;
        int reach = (int) (width / LATTICE_ROW);
        for (int row = -reach; row <= reach; ++row) {
            for (int place = -reach - 1; place <= reach; ++place) {
                double right = place + (row % 2 == 0 ? 0.0 : 0.5);
                double down = row * LATTICE_ROW;
                double part = (1.0 - Math.hypot(right, down) / width) / CONE_OVERLAP;
                if (part > 0.0) {
                    raiseCone(x + right * spacing, y + down * spacing, (float) (strength * part));
                }
            }
        }
    }

    private void raiseCone(double x, double y, float strength) {
        float fromCentreX = (float) ((x - screenWidth / 2.0) / MESH_OVERHANG);
        float fromCentreY = (float) ((y - screenHeight / 2.0) / MESH_OVERHANG);
        velmora.ripple(
            height, screenWidth, screenHeight, columns, rows, fromCentreX, fromCentreY, strength);
    }

    /**
     * Runs the simulation steps that are due after `elapsed` nanoseconds. After a stall of the
     * host, the water skips the lost time instead of catching up.
     */
    void advance(long elapsed) {
        if (idle) {
            pendingTime = 0;
            return;
        }
        long rate = settings.stepsPerSecond;
        long limit = MAX_TIME_AT_ONCE * rate / 60 * STEP_TIME;
        pendingTime = Math.min(pendingTime + elapsed * rate, limit);
        for (; pendingTime >= STEP_TIME && !idle; pendingTime -= STEP_TIME) {
            idle = step();
        }
        buildHeights();
    }

    private boolean step() {
        return velmora.move(velocity, height, 1, 1, columns - 1, rows - 1, columns, 0, true,
            settings.damping, settings.waveSpeed);
    }

    private void buildHeights() {
        int vertex = 0;
        for (int column = 0; column < numDetailsWidth; ++column) {
            for (int row = 0; row < numDetailsHeight; ++row) {
                heights[vertex++] = heightAt(column, row);
                heights[vertex++] = heightAt(column + 1, row);
                heights[vertex++] = heightAt(column, Math.max(row - 1, 0));
            }
        }
    }

    private float heightAt(int column, int row) {
        return height[Math.min(row, rows - 1) * columns + Math.min(column, columns - 1)];
    }
}
