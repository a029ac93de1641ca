#pragma once

#include <string>
#include <string_view>

namespace app {

/// Returns a text as one line that is safe to print. Replaces control characters with spaces, because text from a file
/// may contain any bytes. If the text has more than 400 bytes, cuts out its middle.
std::string oneLine(std::string_view text);

/// Returns a word in single quotes, shortened by `shortened`.
std::string inQuotes(std::string_view word);

/// Returns the first 40 bytes of a text, followed by "..." if there are more. Replaces control characters with spaces.
std::string shortened(std::string_view value);

}  // namespace app
