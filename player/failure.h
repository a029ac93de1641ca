#pragma once

#include <stdexcept>
#include <string>

namespace player {

/// What ends a run early, told to the user as one line "what: where"; the line ends of a name or of
/// another library's words become blanks.
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& what, const std::string& where);
};

}  // namespace player
