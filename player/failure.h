#pragma once

#include <stdexcept>
#include <string>

namespace player {

/// An error that ends a run. The user reads it as one line "what: where".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& what, const std::string& where);
};

/// Prints a line on stderr about a fault that does not end the run.
void warn(const std::string& what, const std::string& where);

}  // namespace player
