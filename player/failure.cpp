#include "player/failure.h"

#include <cstdio>

#include "app/text.h"

namespace player {

Failure::Failure(const std::string& line) : std::runtime_error(app::oneLine(line)) {}

Failure::Failure(const std::string& what, const std::string& where)
    : Failure(what + ": " + where) {}

void warn(const std::string& what, const std::string& where) {
    std::fprintf(stderr, "velmora-player: %s\n", app::oneLine(what + ": " + where).c_str());
}

}  // namespace player
