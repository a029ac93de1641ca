#pragma once

#include <span>
#include <vector>

#include "hostkit/gesture_script.h"

namespace web {

/// Returns a script as numbers, in which it passes between the two modules: width and height of the screen, number of
/// frames, then six numbers for each event. These are the frame, the index of the action in hostkit::ScriptAction, and
/// up to four values of the action in the order of its members.
std::vector<double> numbersOf(const hostkit::GestureScript& script);

/// Returns the script of these numbers.
hostkit::GestureScript scriptOf(std::span<const double> numbers);

}  // namespace web
