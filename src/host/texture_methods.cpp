#include "effect/background_textures.h"
#include "velmora/native_for_velmora.h"

VELMORA_NATIVE(jint, LoadTextures)(JNIEnv* env, jobject, jobject bitmap, jint index) {
    return velmora::loadTexture(velmora::gEffectState, env, bitmap, index);
}
