#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace desktop {

/// Error that ends the current action. The user sees the error as one line, "message: detail".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& message, const std::string& detail);
};

/// Returns an error with the text "cannot write FILE: reason".
Failure cannotWrite(const std::filesystem::path& file, const std::error_code& error);

/// Prints a warning to standard error as one line, "PROGRAM: line", where PROGRAM is the name of this program.
void warn(const std::string& line);
/// Prints a warning to standard error as one line, "PROGRAM: message: detail". The detail is usually a file name.
void warn(const std::string& message, const std::string& detail);

}  // namespace desktop
