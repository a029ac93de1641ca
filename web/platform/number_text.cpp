#include "hostkit/number_text.h"

#include <charconv>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>

// Converts numbers from and to text, because <charconv> of Emscripten's C++ library supports only integers.

namespace hostkit {
namespace {

/// Writes the fewest digits that read back as the same number. Writes an exponent only if that is shorter.
template <class Number, class Parse>
std::to_chars_result writeShortest(char* first, char* last, Number value, int maxDigits,
                                   Parse parse) {
    const auto room = static_cast<std::size_t>(last - first);
    const auto wide = static_cast<double>(value);
    int length = 0;
    for (int digits = 1; digits <= maxDigits; ++digits) {
        length = std::snprintf(first, room, "%.*g", digits, wide);
        if (parse(first) == value) {
            break;
        }
    }
    char plain[32];
    const int plainLength = std::snprintf(plain, sizeof plain, "%.0f", wide);
    if (std::memchr(first, 'e', static_cast<std::size_t>(length)) != nullptr &&
        plainLength <= length && parse(plain) == value) {
        std::memcpy(first, plain, static_cast<std::size_t>(plainLength));
        length = plainLength;
    }
    return {first + length, std::errc{}};
}

}  // namespace

std::from_chars_result readNumber(const char* first, const char* last, double& value) {
    char text[64];
    const auto length = static_cast<std::size_t>(last - first);
    // Rejects leading blanks, plus signs and names such as "inf". strtod accepts them, but std::from_chars does not.
    if (length == 0 || length >= sizeof text || std::strspn(first, "-.0123456789") == 0) {
        return {first, std::errc::invalid_argument};
    }
    std::memcpy(text, first, length);
    text[length] = '\0';
    if (std::strpbrk(text, "xXpP") != nullptr) {  // a hexadecimal number, which strtod would accept
        return {first, std::errc::invalid_argument};
    }
    char* end = nullptr;
    value = std::strtod(text, &end);
    return {first + (end - text), end == text ? std::errc::invalid_argument : std::errc{}};
}

std::from_chars_result readNumber(const char* first, const char* last, float& value) {
    double wide = 0.0;
    const std::from_chars_result result = readNumber(first, last, wide);
    if (result.ec == std::errc{}) {
        char text[64] = {};
        std::memcpy(text, first, static_cast<std::size_t>(result.ptr - first));
        value = std::strtof(text, nullptr);  // a conversion through double would round twice
    }
    return result;
}

std::from_chars_result readNumber(const char* first, const char* last, int& value) {
    return std::from_chars(first, last, value);
}

std::to_chars_result writeNumber(char* first, char* last, double value) {
    return writeShortest(first, last, value, 17,
                         [](const char* text) { return std::strtod(text, nullptr); });
}

std::to_chars_result writeNumber(char* first, char* last, float value) {
    return writeShortest(first, last, value, 9,
                         [](const char* text) { return std::strtof(text, nullptr); });
}

std::to_chars_result writeNumber(char* first, char* last, int value) {
    return std::to_chars(first, last, value);
}

}  // namespace hostkit
