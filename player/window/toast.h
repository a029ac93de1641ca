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

/// Shows a message and replaces the current message.
void showToast(Toast& toast, const std::string& line);

/// Shows an error as a toast and prints it on stderr.
void showFailure(Toast& toast, const std::exception& error);

/// Calls `work`. If `work` throws an error, shows the error as a toast, so that the window stays open.
template <class Work>
void attempt(Toast& toast, Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        showFailure(toast, error);
    }
}

}  // namespace player
