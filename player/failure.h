#pragma once

#include <stdexcept>
#include <string>

namespace player {

/// What ends a run early, told to the user as one line "what: where".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line) : std::runtime_error(line) {}
    Failure(const std::string& what, const std::string& where)
        : std::runtime_error(what + ": " + where) {}
};

}  // namespace player
