#pragma once

#include <string>
#include <string_view>

namespace app {

/// Returns the text on one line without a terminal's control codes, cut in its middle if it is longer than a few lines
/// of a terminal: text from a file may hold anything.
std::string oneLine(std::string_view text);

/// Returns a word from a file in quotes, without control codes, cut if it is long.
std::string inQuotes(std::string_view word);

/// Returns a value from a file like `inQuotes`, without quotes.
std::string shortened(std::string_view value);

}  // namespace app
