package javahost;

import com.corvane.android.visualeffect.lock.velmora.NativeForVelmora;

/**
 * The water of one screen: two grids, the mesh arrays and the heights attribute, worked on by the library.
 *
 * <p>The cell in column x, row y of the grid lies at (x / columns, y / rows) of the screen, rows
 * downwards. The mesh has one vertex more than cells along each side; the last ones repeat the last
 * cell, which is part of the fixed frame.
 */
final class WaterDriver {
    /** Along the shorter side of the screen; the longer side keeps cells and mesh units square. */
    private static final int SHORT_SIDE_CELLS = 90;

    private static final int SHORT_SIDE_MESH_UNITS = 16;
    private static final int MOST_VERTICES = 65536;
    private static final float DAMPING = 0.97f;
    private static final float WAVE_SPEED = 0.3f;

    /** One step takes 1/60 s: time is counted in 60ths of a nanosecond. */
    private static final long STEP_TIME = 1_000_000_000;

    private static final long MOST_STEPS_AT_ONCE = 4;

    /**
     * The mesh is drawn this much larger than the screen. A ray from the effect's eye, 30 before
     * the mesh, meets the picture 30.9 behind it: the picture's edge then lies at the screen's.
     */
    static final float MESH_OVERHANG = 1.015f;

    final int columns;
    final int rows;
    final int meshSizeWidth;
    final int meshSizeHeight;
    final int numDetailsWidth;
    final int numDetailsHeight;
    final float[] positions;
    final short[] indices;

    /** 3 floats per vertex: its height, that of its right neighbour, that of its upper one. */
    final float[] heights;

    private final NativeForVelmora velmora;
    private final int screenWidth;
    private final int screenHeight;
    private final float[] velocity;
    private final float[] height;
    private boolean resting = true;
    private long pendingTime;

    WaterDriver(NativeForVelmora velmora, int screenWidth, int screenHeight) {
        this.velmora = velmora;
        this.screenWidth = screenWidth;
        this.screenHeight = screenHeight;
        int mostCells = MOST_VERTICES / (SHORT_SIDE_CELLS + 1) - 1;
        columns = Math.min(scaled(SHORT_SIDE_CELLS, screenWidth, screenHeight), mostCells);
        rows = Math.min(scaled(SHORT_SIDE_CELLS, screenHeight, screenWidth), mostCells);
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
        return (int) Math.round(Math.min(shortSide * aspect, MOST_VERTICES));
    }

    /** Raises a cone at a touch, screen pixels, y down; wakes the water. */
    void ripple(double x, double y, float strength) {
        float fromCentreX = (float) ((x - screenWidth / 2.0) / MESH_OVERHANG);
        float fromCentreY = (float) ((y - screenHeight / 2.0) / MESH_OVERHANG);
        velmora.ripple(
            height, screenWidth, screenHeight, columns, rows, fromCentreX, fromCentreY, strength);
        resting = false;
    }

    /** Runs the steps due after so many nanoseconds; a host that stalled does not catch up. */
    void advance(long elapsed) {
        if (resting) {
            pendingTime = 0;
            return;
        }
        pendingTime = Math.min(pendingTime + elapsed * 60, MOST_STEPS_AT_ONCE * STEP_TIME);
        for (; pendingTime >= STEP_TIME && !resting; pendingTime -= STEP_TIME) {
            resting = step();
        }
        buildHeights();
    }

    private boolean step() {
        return velmora.move(
            velocity, height, 1, 1, columns - 1, rows - 1, columns, 0, true, DAMPING, WAVE_SPEED);
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
