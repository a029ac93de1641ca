#pragma once

#include <jni.h>

#include "effect/effect_state.h"

namespace velmora {

/// Handles LoadTextures: uploads a 32-bit RGBA bitmap, whose first row is the top one. `index` 0 replaces the
/// reflection map, 1 and 2 the backgrounds. Deletes the old texture of that slot and leaves the new one bound. Call it
/// on the GL thread.
///
/// Returns 0 on success, or the negative result of the first bitmap call that failed. Returns -1 if `index` or the
/// bitmap's format is not one of these. Returns -3 if there is no memory for a copy of padded rows. In both cases the
/// old texture stays. A bitmap that reports neither format nor stride counts as tightly packed.
int loadTexture(EffectState& state, JNIEnv* env, jobject bitmap, int index);

}  // namespace velmora
