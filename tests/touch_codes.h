#pragma once

#include <jni.h>

#include "hostkit/gesture_script.h"

/// The platform's action codes as onTouch takes them; a test may also send others.
enum TouchCode : jint {
    Down = static_cast<jint>(hostkit::TouchAction::down),
    Up = static_cast<jint>(hostkit::TouchAction::up),
    Move = static_cast<jint>(hostkit::TouchAction::move),
    Cancel = static_cast<jint>(hostkit::TouchAction::cancel),
};
