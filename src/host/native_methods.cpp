#include <jni.h>

#include <cstdint>

#include "effect/background_textures.h"
#include "effect/effect_state.h"
#include "effect/frame.h"
#include "effect/touch.h"
#include "gpu/gpu_resources.h"
#include "velmora/native_for_velmora.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

// The native methods that Java calls. Each method pins the host's arrays, calls the effect and releases the arrays. The
// library's global variables are defined in library.cpp and used only here and in kit/effect_scene.cpp.

using namespace velmora;

// A method pins its arrays at the start and releases them in the same order at the end. If the JVM has pinned a copy of
// an array, the release copies the changes back. If `pin` returns null, the host is out of memory and a Java exception
// is pending. From then on JNI allows only releases.

namespace {

jfloat* pin(JNIEnv* env, jfloatArray array) {
    return env->GetFloatArrayElements(array, nullptr);
}
jshort* pin(JNIEnv* env, jshortArray array) {
    return env->GetShortArrayElements(array, nullptr);
}

void release(JNIEnv* env, jfloatArray array, jfloat* elements) {
    if (elements != nullptr) {
        env->ReleaseFloatArrayElements(array, elements, 0);
    }
}
void release(JNIEnv* env, jshortArray array, jshort* elements) {
    if (elements != nullptr) {
        env->ReleaseShortArrayElements(array, elements, 0);
    }
}

/// Casts mesh indices to unsigned numbers. The host passes them as shorts, because Java has no unsigned 16-bit array
/// type.
std::uint16_t* asIndices(jshort* elements) {
    return reinterpret_cast<std::uint16_t*>(elements);
}

}  // namespace

// ---- Set-up

VELMORA_NATIVE(void, onInitSetting)
(JNIEnv*, jobject, jint width, jint height, jboolean withInk) {
    inkEnabled = withInk != 0;
    applySettings(gEffectState, width, height, inkEnabled);
}

VELMORA_NATIVE(void, onInitUVHBuffer)(JNIEnv*, jobject) {
    replaceContext(gEffectState);
}

VELMORA_NATIVE(void, onInitGPU)(JNIEnv*, jobject) {
    initGPUResources(gEffectState, inkEnabled);
}

VELMORA_NATIVE(jint, LoadTextures)(JNIEnv* env, jobject, jobject bitmap, jint index) {
    return loadTexture(gEffectState, env, bitmap, index);
}

// ---- Frames and touches

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

VELMORA_NATIVE(void, onTouch)(JNIEnv*, jobject, jint x, jint y, jint action, jfloat pressure) {
    handleTouchEvent(gEffectState, gTouch, x, y, action, pressure);
}

VELMORA_NATIVE(jint, getClearInkValue)(JNIEnv*, jobject) {
    return static_cast<jint>(float{gEffectState.inkAmount});
}

VELMORA_NATIVE(void, clearInkValue)(JNIEnv*, jobject) {
    clearInk(gEffectState, gTouch);
}

// ---- Water

VELMORA_NATIVE(void, initWaters)
(JNIEnv* env, jobject, jfloatArray positions, jshortArray indices, jint vertexCount,
 jint meshSizeWidth, jint meshSizeHeight, jint numDetailsWidth, jint numDetailsHeight) {
    jfloat* const pinnedPositions = pin(env, positions);
    jshort* const pinnedIndices = pinnedPositions ? pin(env, indices) : nullptr;
    if (pinnedIndices) {
        const MeshShape shape{meshSizeWidth, meshSizeHeight, numDetailsWidth, numDetailsHeight};
        writeMeshPositions(pinnedPositions, vertexCount, shape);
        writeMeshIndices(asIndices(pinnedIndices), shape);
    }
    release(env, positions, pinnedPositions);
    release(env, indices, pinnedIndices);
}

VELMORA_NATIVE(void, ripple)
(JNIEnv* env, jobject, jfloatArray grid, jint areaWidth, jint areaHeight, jint waterGridWidth,
 jint waterGridHeight, jfloat x, jfloat y, jfloat strength) {
    jfloat* const cells = pin(env, grid);
    if (cells) {
        addRipple(cells, {areaWidth, areaHeight, waterGridWidth, waterGridHeight, x, y, strength});
    }
    release(env, grid, cells);
}

VELMORA_NATIVE(jboolean, move)
(JNIEnv* env, jobject, jfloatArray waterVelocity, jfloatArray waterHeight, jint x0, jint y0,
 jint x1, jint y1, jint rowLength, jint /*unused*/, jboolean detectCalm, jfloat damping,
 jfloat waveSpeed) {
    jfloat* const velocity = pin(env, waterVelocity);
    jfloat* const height = velocity ? pin(env, waterHeight) : nullptr;
    bool isCalm = true;
    if (height) {
        isCalm = stepHeightField({velocity, height, rowLength}, {x0, y0, x1, y1},
                                 {damping, waveSpeed, detectCalm != 0});
    }
    release(env, waterVelocity, velocity);
    release(env, waterHeight, height);
    return static_cast<jboolean>(isCalm);
}
