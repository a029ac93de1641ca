#pragma once

#include <span>
#include <vector>

#include "hostkit/gesture_script.h"

namespace web {

/// Encodes a gesture script as numbers, which the page's script can pass between the two WebAssembly modules. The
/// numbers are: width and height of the screen, number of frames, then six numbers for each event. The six numbers are
/// the frame, the index of the action in hostkit::ScriptAction, and up to four values of the action, in the order of
/// its members.
std::vector<double> numbersOf(const hostkit::GestureScript& script);

/// Decodes a gesture script that `numbersOf` has encoded.
hostkit::GestureScript scriptOf(std::span<const double> numbers);

}  // namespace web
