#pragma once

#include <chrono>
#include <exception>
#include <string>

namespace player {

/// A line at the window's lower edge that stays for a while.
struct Toast {
    using Clock = std::chrono::steady_clock;

    std::string line;
    Clock::time_point end{};
};

void showToast(Toast& toast, const std::string& line);

/// Says it, and on stderr too.
void showFailure(Toast& toast, const std::exception& error);

/// What fails while the window is open is told, and the window stays.
template <class Work>
void attempt(Toast& toast, Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        showFailure(toast, error);
    }
}

}  // namespace player
