#include "player/window/toast.h"

#include <cstdio>

#include "app/text.h"
#include "desktop/failure.h"

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr auto toastTime = 4s;

}  // namespace

void showToast(Toast& toast, const std::string& line) {
    toast = {line, Toast::Clock::now() + toastTime};
}

void showFailure(Toast& toast, const std::exception& error) {
    const std::string line = app::oneLine(error.what());
    std::fprintf(stderr, "velmora-player: %s\n", line.c_str());
    showToast(toast, line);
}

}  // namespace player
