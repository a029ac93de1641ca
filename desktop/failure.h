#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace desktop {

/// Error that ends the current action. The user sees one line: "message: detail".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& message, const std::string& detail);
};

/// Returns the failure "cannot write FILE: reason".
Failure cannotWrite(const std::filesystem::path& file, const std::error_code& error);

/// Prints a warning on stderr as one line: "program: line".
void warn(const std::string& line);
/// Prints a warning on stderr as one line: "program: message: detail". The detail is usually a file.
void warn(const std::string& message, const std::string& detail);

}  // namespace desktop
