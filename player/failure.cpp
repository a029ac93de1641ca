#include "player/failure.h"

#include <cstdio>

#include "app/text.h"

namespace player {

Failure::Failure(const std::string& line) : std::runtime_error(app::oneLine(line)) {}

Failure::Failure(const std::string& message, const std::string& detail)
    : Failure(message + ": " + detail) {}

void warn(const std::string& message, const std::string& detail) {
    std::fprintf(stderr, "velmora-player: %s\n", app::oneLine(message + ": " + detail).c_str());
}

}  // namespace player
