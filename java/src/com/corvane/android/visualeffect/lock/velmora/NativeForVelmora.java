package com.corvane.android.visualeffect.lock.velmora;

import android.graphics.Bitmap;

/**
 * The native half of the effect. All methods run on the render thread with its GL context current,
 * unless said otherwise. The library keeps one state per process, whichever instance is called.
 */
public final class NativeForVelmora {
    public static final int ACTION_DOWN = 0;
    public static final int ACTION_UP = 1;
    public static final int ACTION_MOVE = 2;
    public static final int ACTION_CANCEL = 3;

    static { System.loadLibrary("peluxVelmora"); }

    /** Sets the surface size in pixels and the mode; sizes take effect at the next onInitGPU. */
    public native void onInitSetting(int width, int height, boolean inkEnabled);

    /** First call on a new GL context: forgets the names of the old one, makes mesh buffers. */
    public native void onInitUVHBuffer();

    /** Builds programs, render targets and solver grids in the sizes of onInitSetting. */
    public native void onInitGPU();

    /**
     * Uploads an ARGB_8888 bitmap into slot 0 (water sheen), 1 or 2 (backgrounds). Returns 0, or a
     * negative code when the bitmap is refused.
     */
    public native int LoadTextures(Bitmap bitmap, int index);

    /**
     * Draws one frame into the default framebuffer. Positions and heights hold 3 floats per vertex,
     * indices a triangle list of unsigned 16-bit indices, mvpMatrix 16 floats, column-major.
     */
    public native void onDrawFrame(float[] positions, float[] heights, short[] indices,
        int positionCount, int heightCount, int indexCount, float[] mvpMatrix, int meshSizeWidth,
        int meshSizeHeight, int numDetailsWidth, int numDetailsHeight, float refractiveIndex,
        float alpha, float alphaRatio1Scale, float alphaRatio2Scale, float inkRed, float inkGreen,
        float inkBlue, float fresnelRatio, float specularRatio, float exponent,
        boolean useSecondBackground);

    /** 1 while ink is shown, 0 after a cancel or a clear. Any thread. */
    public native int getClearInkValue();

    /** Removes the ink at once and ends the gesture. Any thread. */
    public native void clearInkValue();

    /** One touch event; x, y in screen pixels, y down; action as above. Any thread. */
    public native void onTouch(int x, int y, int action, float pressure);

    /**
     * Fills the mesh arrays: 3 floats per vertex, 6 indices per cell of the mesh. Any thread;
     * touches no state of the library.
     */
    public native void initWaters(float[] positions, short[] indices, int vertexCount,
        int meshSizeWidth, int meshSizeHeight, int numDetailsWidth, int numDetailsHeight);

    /**
     * Adds a cone of radius 3 cells and peak 3 * strength to a water grid at (x, y), given relative
     * to the centre of the area that the grid covers, y down. Any thread; touches no state of the library.
     */
    public native void ripple(float[] grid, int areaWidth, int areaHeight, int waterGridWidth,
        int waterGridHeight, float x, float y, float strength);

    /**
     * Steps the water on the rectangle [x0, x1) x [y0, y1), around which a frame of at least one
     * cell lies in the grid. Returns whether it is calm. Any thread; touches no state of the library.
     */
    public native boolean move(float[] waterVelocity, float[] waterHeight, int x0, int y0, int x1,
        int y1, int rowLength, int unused, boolean detectCalm, float damping, float waveSpeed);
}
