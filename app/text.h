#pragma once

#include <string>
#include <string_view>

namespace app {

/// Returns the text as one line that is safe to print. Replaces control characters with spaces, because text from a
/// file may contain any bytes. Cuts out the middle of a text of more than 400 bytes.
std::string oneLine(std::string_view text);

/// Returns a word in single quotes, shortened as by `shortened`.
std::string inQuotes(std::string_view word);

/// Returns the first 40 bytes of a text, followed by "..." if there are more. Replaces control characters with spaces.
std::string shortened(std::string_view value);

}  // namespace app
