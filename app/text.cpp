#include "app/text.h"

#include <cstddef>

namespace app {
namespace {

constexpr std::size_t longestLine = 400;
constexpr std::size_t longestWord = 40;
constexpr std::string_view cutMark = "...";

bool isControl(unsigned char letter) {
    return letter < 0x20 || letter == 0x7F;
}

/// Returns whether a byte continues a UTF-8 letter: a cut before it would split the letter.
bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string_view head(std::string_view text, std::size_t max) {
    while (max > 0 && max < text.size() && continues(text[max])) {
        --max;
    }
    return text.substr(0, max);
}

std::string_view tail(std::string_view text, std::size_t max) {
    std::size_t from = text.size() - max;
    while (from < text.size() && continues(text[from])) {
        ++from;
    }
    return text.substr(from);
}

/// Replaces control codes by blanks, also those from U+0080 to U+009F, which take two bytes.
std::string visible(std::string_view text) {
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
    if (text.size() <= longestLine) {
        return visible(text);
    }
    constexpr std::size_t half = longestLine / 2;
    return visible(head(text, half)).append(cutMark).append(visible(tail(text, half)));
}

std::string shortened(std::string_view value) {
    const std::string_view kept = head(value, longestWord);
    return visible(kept).append(kept.size() < value.size() ? cutMark : "");
}

std::string inQuotes(std::string_view word) {
    std::string quoted(1, '\'');
    return quoted.append(shortened(word)).append(1, '\'');
}

}  // namespace app
