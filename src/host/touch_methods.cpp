#include "effect/touch.h"
#include "velmora/native_for_velmora.h"

VELMORA_NATIVE(void, onTouch)(JNIEnv*, jobject, jint x, jint y, jint action, jfloat pressure) {
    velmora::handleTouchEvent(velmora::gEffectState, velmora::gTouch, x, y, action, pressure);
}

VELMORA_NATIVE(jint, getClearInkValue)(JNIEnv*, jobject) {
    return static_cast<jint>(float{velmora::gEffectState.inkAmount});
}

VELMORA_NATIVE(void, clearInkValue)(JNIEnv*, jobject) {
    velmora::clearInk(velmora::gEffectState, velmora::gTouch);
}
