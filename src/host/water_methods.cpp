#include "host/pinned_arrays.h"
#include "velmora/native_for_velmora.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

using namespace velmora;

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
