#pragma once

#include <jni.h>

#include "effect/effect_state.h"

namespace velmora {

/// Handles LoadTextures: uploads a 32-bit RGBA bitmap, rows from the top, into the slot `index` (0 reflection map,
/// 1 and 2 backgrounds). Deletes the slot's old texture and leaves the new one bound.
///
/// Returns 0, or the negative result of the first bitmap call that failed. Returns -1 for another index and for a
/// bitmap whose format is not 32-bit RGBA, and -3 if there is no memory to remove the padding of its rows; in these
/// cases the old texture stays. A bitmap without format and stride counts as tightly packed. GL thread.
int loadTexture(EffectState& state, JNIEnv* env, jobject bitmap, int index);

}  // namespace velmora
