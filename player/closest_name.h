#pragma once

#include <span>
#include <string>
#include <string_view>

namespace player {

/// Returns "; did you mean NAME?" with the name that is most similar to `word`, or an empty text if none is similar.
std::string suggestion(std::string_view word, std::span<const std::string> names);

}  // namespace player
