#pragma once

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Numbers as text for a C++ library whose <charconv> knows integers alone. Included before every
// source of the host.

namespace std {

inline from_chars_result from_chars(const char* first, const char* last, double& value) {
    char text[64];
    const auto length = static_cast<size_t>(last - first);
    // What strtod takes and from_chars does not: blanks, plus signs, hexadecimal digits, and names.
    if (length == 0 || length >= sizeof text || strspn(first, "-.0123456789") == 0) {
        return {first, errc::invalid_argument};
    }
    memcpy(text, first, length);
    text[length] = '\0';
    if (strpbrk(text, "xXpP") != nullptr) {
        return {first, errc::invalid_argument};
    }
    char* end = nullptr;
    value = strtod(text, &end);
    return {first + (end - text), end == text ? errc::invalid_argument : errc{}};
}

inline from_chars_result from_chars(const char* first, const char* last, float& value) {
    double wide = 0.0;
    const from_chars_result result = from_chars(first, last, wide);
    if (result.ec == errc{}) {
        char text[64] = {};
        memcpy(text, first, static_cast<size_t>(result.ptr - first));
        value = strtof(text, nullptr);  // rounded once
    }
    return result;
}

/// The fewest digits that read back as the same number.
template <class Number, class Parse>
to_chars_result shortestChars(char* first, char* last, Number value, int mostDigits, Parse parse) {
    for (int digits = 1;; ++digits) {
        const int length = snprintf(first, static_cast<size_t>(last - first), "%.*g", digits,
                                    static_cast<double>(value));
        if (digits == mostDigits || parse(first) == value) {
            return {first + length, errc{}};
        }
    }
}

inline to_chars_result to_chars(char* first, char* last, double value) {
    return shortestChars(first, last, value, 17,
                         [](const char* text) { return strtod(text, nullptr); });
}

inline to_chars_result to_chars(char* first, char* last, float value) {
    return shortestChars(first, last, value, 9,
                         [](const char* text) { return strtof(text, nullptr); });
}

}  // namespace std
