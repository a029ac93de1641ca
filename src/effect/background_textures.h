#pragma once

#include <jni.h>

#include "effect/effect_state.h"

namespace velmora {

/// The body of LoadTextures: uploads a 32-bit RGBA bitmap, rows from the top, into the slot `index`
/// (0 water sheen, 1 and 2 backgrounds), whose old texture it deletes. The new texture stays bound.
/// Returns 0, or the negative result of the bitmap call that failed; -1 and nothing done for
/// another index or a bitmap that says it is not 32-bit RGBA; -3 and nothing done where memory
/// lacks for rows that must be packed. One that tells neither format nor stride is taken as tightly
/// packed. GL thread.
int loadTexture(EffectState& state, JNIEnv* env, jobject bitmap, int index);

}  // namespace velmora
