#include "player/failure.h"

#include <algorithm>
#include <cctype>

namespace player {
namespace {

std::string oneLine(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char letter) { return std::iscntrl(letter) != 0; }, ' ');
    return text;
}

}  // namespace

Failure::Failure(const std::string& line) : std::runtime_error(oneLine(line)) {}

Failure::Failure(const std::string& what, const std::string& where)
    : Failure(what + ": " + where) {}

}  // namespace player
