#include "player/failure.h"

#include <cstdio>

namespace player {
namespace {

constexpr std::size_t longestLine = 400;
constexpr std::size_t longestWord = 40;
constexpr std::string_view cutMark = "...";

bool isControl(unsigned char letter) {
    return letter < 0x20 || letter == 0x7F;
}

/// Of an UTF-8 letter's bytes all but the first: a cut before one would split the letter.
bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string_view head(std::string_view text, std::size_t most) {
    while (most > 0 && most < text.size() && continues(text[most])) {
        --most;
    }
    return text.substr(0, most);
}

std::string_view tail(std::string_view text, std::size_t most) {
    std::size_t from = text.size() - most;
    while (from < text.size() && continues(text[from])) {
        ++from;
    }
    return text.substr(from);
}

/// Controls, also those written as two bytes from U+0080 to U+009F, become blanks.
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

std::string inQuotes(std::string_view word) {
    const std::string_view kept = head(word, longestWord);
    std::string shown(1, '\'');
    return shown.append(visible(kept)).append(kept.size() < word.size() ? cutMark : "").append("'");
}

Failure::Failure(const std::string& line) : std::runtime_error(oneLine(line)) {}

Failure::Failure(const std::string& what, const std::string& where)
    : Failure(what + ": " + where) {}

void warn(const std::string& what, const std::string& where) {
    std::fprintf(stderr, "velmora-player: %s\n", oneLine(what + ": " + where).c_str());
}

}  // namespace player
