#include "effect/effect_state.h"
#include "velmora/native_for_velmora.h"

VELMORA_NATIVE(void, onInitSetting)
(JNIEnv*, jobject, jint width, jint height, jboolean withInk) {
    velmora::inkEnabled = withInk != 0;
    velmora::applySettings(velmora::gEffectState, width, height, velmora::inkEnabled);
}
