#pragma once

#include <stdexcept>
#include <string>

namespace desktop {

/// Error that ends the current action. The user sees one line: "message: detail".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& message, const std::string& detail);
};

/// Prints a warning on stderr as one line: "program: line".
void warn(const std::string& line);
/// Prints a warning on stderr as one line: "program: message: detail". The detail is usually a file.
void warn(const std::string& message, const std::string& detail);

}  // namespace desktop
