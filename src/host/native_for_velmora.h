#pragma once

#include <jni.h>

// The native methods of com.corvane.android.visualeffect.lock.velmora.NativeForVelmora, as the
// host's Java class declares them. All run on the render thread with its GL context current, unless
// said otherwise. Array arguments are pinned for the call only and written back at its end.

#define VELMORA_NATIVE(result, method)  \
    extern "C" JNIEXPORT result JNICALL \
        Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##method

/// Sets the surface size in pixels and the mode; sizes take effect at the next onInitGPU.
VELMORA_NATIVE(void, onInitSetting)
(JNIEnv* env, jobject self, jint width, jint height, jboolean inkEnabled);

/// First call on a new GL context: forgets the names of the old one, makes the three mesh buffers.
VELMORA_NATIVE(void, onInitUVHBuffer)(JNIEnv* env, jobject self);

/// Builds programs, render targets and solver grids in the sizes of onInitSetting.
VELMORA_NATIVE(void, onInitGPU)(JNIEnv* env, jobject self);

/// Uploads a 32-bit RGBA bitmap into slot 0 (water sheen), 1 or 2 (backgrounds). Returns 0, or the
/// negative code of the bitmap call that failed; any other index or pixel format is refused with
/// -1.
VELMORA_NATIVE(jint, LoadTextures)(JNIEnv* env, jobject self, jobject bitmap, jint index);

/// Draws one frame into the default framebuffer. `positions` and `heights` hold 3 floats per
/// vertex, `indices` a triangle list of unsigned 16-bit indices, `mvpMatrix` 16 floats,
/// column-major.
VELMORA_NATIVE(void, onDrawFrame)
(JNIEnv* env, jobject self, jfloatArray positions, jfloatArray heights, jshortArray indices,
 jint positionCount, jint heightCount, jint indexCount, jfloatArray mvpMatrix, jint meshSizeWidth,
 jint meshSizeHeight, jint numDetailsWidth, jint numDetailsHeight, jfloat refractiveIndex,
 jfloat alpha, jfloat alphaRatio1Scale, jfloat alphaRatio2Scale, jfloat inkRed, jfloat inkGreen,
 jfloat inkBlue, jfloat fresnelRatio, jfloat specularRatio, jfloat exponent,
 jboolean useSecondBackground);

/// 1 while ink is shown, 0 after a cancel or a clear. Any thread.
VELMORA_NATIVE(jint, getClearInkValue)(JNIEnv* env, jobject self);

/// Removes the ink at once and ends the gesture. Any thread.
VELMORA_NATIVE(void, clearInkValue)(JNIEnv* env, jobject self);

/// One touch event; x, y in screen pixels, y down; action 0 down, 1 up, 2 move, 3 cancel. Any
/// thread.
VELMORA_NATIVE(void, onTouch)
(JNIEnv* env, jobject self, jint x, jint y, jint action, jfloat pressure);

/// Fills the mesh arrays: 3 * vertexCount floats, 6 * (numDetailsWidth - 1) * (numDetailsHeight -
/// 1) indices. Any thread; touches no state of the library.
VELMORA_NATIVE(void, initWaters)
(JNIEnv* env, jobject self, jfloatArray positions, jshortArray indices, jint vertexCount,
 jint meshSizeWidth, jint meshSizeHeight, jint numDetailsWidth, jint numDetailsHeight);

/// Adds a cone of radius 3 cells and peak 3 * strength to a water grid at (x, y), given relative to
/// the centre of the area that the grid covers, rows growing with y. Any thread; touches no state
/// of the library.
VELMORA_NATIVE(void, ripple)
(JNIEnv* env, jobject self, jfloatArray grid, jint areaWidth, jint areaHeight, jint waterGridWidth,
 jint waterGridHeight, jfloat x, jfloat y, jfloat strength);

/// Steps the water on the rectangle [x0, x1) x [y0, y1), around which a frame of at least one cell
/// lies in the grid. Returns whether it is calm. Any thread; touches no state of the library.
VELMORA_NATIVE(jboolean, move)
(JNIEnv* env, jobject self, jfloatArray waterVelocity, jfloatArray waterHeight, jint x0, jint y0,
 jint x1, jint y1, jint rowLength, jint unused, jboolean detectCalm, jfloat damping,
 jfloat waveSpeed);
