#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>

#include "player/window/keys.h"
#include "player/window/requests.h"

namespace player {

/// Symbol at the left of an on-screen indicator.
enum class MarkSymbol { record, play, pause };

/// On-screen indicator of an activity in progress, such as a film or a replay. A click on the indicator ends the
/// activity.
struct Mark {
    MarkSymbol symbol;
    std::string label;
    /// Elapsed time. Empty for a pause.
    std::optional<std::chrono::seconds> time;
    /// Start time of the activity. Esc stops the newest activity. Empty for a pause, because Esc does not end a pause.
    std::optional<std::chrono::steady_clock::time_point> start;
    /// Command that ends the activity.
    Command end;
    /// Hint that says what a click does.
    const char* hint;
};

/// Draws the on-screen indicators as buttons below each other in the upper right corner. A click on an indicator adds
/// its command to `requests`.
void drawMarks(std::span<const Mark> marks, Requests& requests);

}  // namespace player
