#include "effect/frame.h"
#include "gpu/gpu_resources.h"
#include "host/pinned_arrays.h"
#include "velmora/native_for_velmora.h"

using namespace velmora;

VELMORA_NATIVE(void, onInitUVHBuffer)(JNIEnv*, jobject) {
    replaceContext(gEffectState);
}

VELMORA_NATIVE(void, onInitGPU)(JNIEnv*, jobject) {
    initGPUResources(gEffectState, inkEnabled);
}

VELMORA_NATIVE(void, onDrawFrame)
(JNIEnv* env, jobject, jfloatArray positions, jfloatArray heights, jshortArray indices,
 jint positionCount, jint heightCount, jint indexCount, jfloatArray mvpMatrix, jint meshSizeWidth,
 jint meshSizeHeight, jint numDetailsWidth, jint numDetailsHeight, jfloat refractiveIndex,
 jfloat alpha, jfloat alphaRatio1Scale, jfloat alphaRatio2Scale, jfloat inkRed, jfloat inkGreen,
 jfloat inkBlue, jfloat fresnelRatio, jfloat specularRatio, jfloat exponent,
 jboolean useSecondBackground) {
    startFrame(gEffectState);
    jfloat* const pinnedPositions = pin(env, positions);
    jfloat* const pinnedHeights = pinnedPositions ? pin(env, heights) : nullptr;
    jfloat* const pinnedMatrix = pinnedHeights ? pin(env, mvpMatrix) : nullptr;
    jshort* const pinnedIndices = pinnedMatrix ? pin(env, indices) : nullptr;
    if (pinnedIndices) {
        drawFrame(gEffectState, gTouch,
                  {.positions = pinnedPositions,
                   .heights = pinnedHeights,
                   .indices = asIndices(pinnedIndices),
                   .positionCount = positionCount,
                   .heightCount = heightCount,
                   .indexCount = indexCount,
                   .mvpMatrix = pinnedMatrix,
                   .meshSizeWidth = meshSizeWidth,
                   .meshSizeHeight = meshSizeHeight,
                   .numDetailsWidth = numDetailsWidth,
                   .numDetailsHeight = numDetailsHeight,
                   .refractiveIndex = refractiveIndex,
                   .alpha = alpha,
                   .alphaRatio1Scale = alphaRatio1Scale,
                   .alphaRatio2Scale = alphaRatio2Scale,
                   .fresnelRatio = fresnelRatio,
                   .specularRatio = specularRatio,
                   .exponent = exponent,
                   .inkEnabled = inkEnabled,
                   .useSecondBackground = useSecondBackground != 0},
                  {inkRed, inkGreen, inkBlue});
    }
    release(env, positions, pinnedPositions);
    release(env, heights, pinnedHeights);
    release(env, mvpMatrix, pinnedMatrix);
    release(env, indices, pinnedIndices);
}
