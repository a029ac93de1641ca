#pragma once

#include <charconv>

namespace hostkit {

/// Reads a number at the start of the text, as std::from_chars does. A platform whose C++ library knows only integers
/// there brings its own definition.
std::from_chars_result readNumber(const char* first, const char* last, double& value);
std::from_chars_result readNumber(const char* first, const char* last, float& value);
std::from_chars_result readNumber(const char* first, const char* last, int& value);

/// Writes the shortest text that reads back as the same number, as std::to_chars does.
std::to_chars_result writeNumber(char* first, char* last, double value);
std::to_chars_result writeNumber(char* first, char* last, float value);
std::to_chars_result writeNumber(char* first, char* last, int value);

}  // namespace hostkit
