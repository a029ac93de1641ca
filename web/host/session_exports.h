#pragma once

#include <chrono>

#include "app/frame_clock.h"
#include "app/session.h"
#include "app/settings.h"

namespace web {

/// Session of the module. The module of the page and the module of the custom element each define it with their own
/// front end.
// NOLINTNEXTLINE(bugprone-dynamic-static-initializers): a declaration initialises nothing
extern app::Session session;

/// Converts a result of performance.now(), in milliseconds, to a time point.
app::Clock::time_point moment(double milliseconds);
/// Converts a duration to milliseconds.
double inMilliseconds(std::chrono::nanoseconds time);

/// Reads settings: numbers and switches in the order of app::forEachField, then red, green and blue of the ink.
void readSettings(const double* numbers, app::Settings& settings);

}  // namespace web
