package com.corvane.android.visualeffect.lock.velmora;

import android.graphics.Bitmap;

/**
 * The native methods of the effect. The public header velmora/native_methods.inc documents their
 * parameters, units, ranges, threads and results.
 *
 * <p>All instances of this class share the library's state, which exists once per process.
 */
public final class NativeForVelmora {
    public static final int ACTION_DOWN = 0;
    public static final int ACTION_UP = 1;
    public static final int ACTION_MOVE = 2;
    public static final int ACTION_CANCEL = 3;

    static { System.loadLibrary("peluxVelmora"); }

    public native void onInitSetting(int width, int height, boolean inkEnabled);

    public native void onInitUVHBuffer();

    public native void onInitGPU();

    public native int LoadTextures(Bitmap bitmap, int index);

    public native void onDrawFrame(float[] positions, float[] heights, short[] indices,
        int positionCount, int heightCount, int indexCount, float[] mvpMatrix, int meshSizeWidth,
        int meshSizeHeight, int numDetailsWidth, int numDetailsHeight, float refractiveIndex,
        float alpha, float alphaRatio1Scale, float alphaRatio2Scale, float inkRed, float inkGreen,
        float inkBlue, float fresnelRatio, float specularRatio, float exponent,
        boolean useSecondBackground);

    public native int getClearInkValue();

    public native void clearInkValue();

    public native void onTouch(int x, int y, int action, float pressure);

    public native void initWaters(float[] positions, short[] indices, int vertexCount,
        int meshSizeWidth, int meshSizeHeight, int numDetailsWidth, int numDetailsHeight);

    public native void ripple(float[] grid, int areaWidth, int areaHeight, int waterGridWidth,
        int waterGridHeight, float x, float y, float strength);

    public native boolean move(float[] waterVelocity, float[] waterHeight, int x0, int y0, int x1,
        int y1, int rowLength, int unused, boolean detectCalm, float damping, float waveSpeed);
}
