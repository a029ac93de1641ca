#include "player/size.h"

#include <charconv>
#include <cstddef>
#include <system_error>

namespace player {
namespace {

/// Reads an integer from the start of `text` and removes it from `text`.
bool takeNumber(std::string_view& text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc{};
}

bool isSide(int side) {
    return side >= minSide && side <= maxSide;
}

}  // namespace

std::optional<app::Size> parseSize(std::string_view text) {
    app::Size size{};
    const bool width = takeNumber(text, size.width);
    const bool cross = (text.starts_with('x') || text.starts_with('X'));
    text.remove_prefix(cross ? 1 : 0);
    const bool height = takeNumber(text, size.height);
    const bool whole = width && cross && height && text.empty();
    return whole && isSide(size.width) && isSide(size.height) ? std::optional(size) : std::nullopt;
}

}  // namespace player
