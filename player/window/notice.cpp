#include "player/window/notice.h"

#include <cstdio>

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr auto noticeTime = 4s;

}  // namespace

void say(Notice& notice, const std::string& line) {
    notice = {line, Notice::Clock::now() + noticeTime, false};
}

void sayFailure(Notice& notice, const std::exception& error) {
    std::fprintf(stderr, "velmora-player: %s\n", error.what());
    say(notice, error.what());
}

}  // namespace player
