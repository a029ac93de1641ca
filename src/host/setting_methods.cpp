#include "effect/effect_state.h"
#include "velmora/native_for_velmora.h"

VELMORA_NATIVE(void, onInitSetting)
(JNIEnv*, jobject, jint width, jint height, jboolean inkEnabled) {
    velmora::applySettings(velmora::gEffectState, width, height, inkEnabled != 0);
}
