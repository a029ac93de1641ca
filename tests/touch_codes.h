#pragma once

#include <jni.h>

#include "hostkit/gesture_script.h"

/// Android's action codes for onTouch. Tests also send codes that are not in this list.
enum TouchCode : jint {
    Down = static_cast<jint>(hostkit::TouchAction::down),
    Up = static_cast<jint>(hostkit::TouchAction::up),
    Move = static_cast<jint>(hostkit::TouchAction::move),
    Cancel = static_cast<jint>(hostkit::TouchAction::cancel),
};
