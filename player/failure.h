#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace player {

/// The text on one line without a terminal's control codes, cut in its middle where it is longer
/// than a few lines of a terminal: what came from a file may hold anything.
std::string oneLine(std::string_view text);

/// A word that came from a file, in quotes, cut where it is long.
std::string inQuotes(std::string_view word);

/// What ends a run early, told to the user as one line "what: where".
struct Failure : std::runtime_error {
    explicit Failure(const std::string& line);
    Failure(const std::string& what, const std::string& where);
};

/// A line on stderr, for what is wrong but ends nothing.
void warn(const std::string& what, const std::string& where);

}  // namespace player
