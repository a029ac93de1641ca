#include "player/window/notice.h"

#include <cstdio>

#include "app/text.h"
#include "player/failure.h"

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr auto noticeTime = 4s;

}  // namespace

void say(Notice& notice, const std::string& line) {
    notice = {line, Notice::Clock::now() + noticeTime};
}

void sayFailure(Notice& notice, const std::exception& error) {
    const std::string line = app::oneLine(error.what());
    std::fprintf(stderr, "velmora-player: %s\n", line.c_str());
    say(notice, line);
}

}  // namespace player
