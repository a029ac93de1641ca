#include "app/text.h"

#include <cstddef>

namespace app {
namespace {

/// Maximum length of a printed line in bytes.
constexpr std::size_t maxLineLength = 400;
/// Maximum length in bytes of a word that a message quotes.
constexpr std::size_t maxWordLength = 40;
/// Characters that replace removed text.
constexpr std::string_view ellipsis = "...";

bool isControl(unsigned char character) {
    return character < 0x20 || character == 0x7F;
}

/// Returns true if a byte is inside a UTF-8 character. A cut before such a byte would split the character.
bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Returns the start of a text, at most `max` bytes, without splitting a character.
std::string_view head(std::string_view text, std::size_t max) {
    while (max > 0 && max < text.size() && continuesCharacter(text[max])) {
        --max;
    }
    return text.substr(0, max);
}

/// Returns the end of a text, at most `max` bytes, without splitting a character.
std::string_view tail(std::string_view text, std::size_t max) {
    std::size_t from = text.size() - max;
    while (from < text.size() && continuesCharacter(text[from])) {
        ++from;
    }
    return text.substr(from);
}

/// Replaces control characters with spaces. This includes U+0080 to U+009F, which have two bytes in UTF-8.
std::string withoutControls(std::string_view text) {
    std::string shown;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool wide = text[at] == '\xC2' && at + 1 < text.size() &&
                          static_cast<unsigned char>(text[at + 1]) < 0xA0;
        at += wide ? 1 : 0;
        shown += wide || isControl(static_cast<unsigned char>(text[at])) ? ' ' : text[at];
    }
    return shown;
}

}  // namespace

std::string oneLine(std::string_view text) {
    if (text.size() <= maxLineLength) {
        return withoutControls(text);
    }
    constexpr std::size_t half = maxLineLength / 2;
    return withoutControls(head(text, half))
        .append(ellipsis)
        .append(withoutControls(tail(text, half)));
}

std::string shortened(std::string_view value) {
    const std::string_view kept = head(value, maxWordLength);
    return withoutControls(kept).append(kept.size() < value.size() ? ellipsis : "");
}

std::string inQuotes(std::string_view word) {
    std::string quoted(1, '\'');
    return quoted.append(shortened(word)).append(1, '\'');
}

}  // namespace app
