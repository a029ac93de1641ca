#pragma once

#include <chrono>
#include <exception>
#include <string>

namespace player {

/// Short message at the lower edge of the window. It disappears at the time `end`.
struct Toast {
    using Clock = std::chrono::steady_clock;

    std::string line;
    Clock::time_point end{};
};

/// Shows a message and replaces the current one.
void showToast(Toast& toast, const std::string& line);

/// Shows an error as a toast and prints it on stderr.
void showFailure(Toast& toast, const std::exception& error);

/// Calls `work` and shows its error, if any, as a toast. The window stays open.
template <class Work>
void attempt(Toast& toast, Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        showFailure(toast, error);
    }
}

}  // namespace player
