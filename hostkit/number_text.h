#pragma once

#include <charconv>

namespace hostkit {

/// @file
/// Conversion between numbers and text. On some platforms, std::from_chars and std::to_chars support only integers. A
/// build for such a platform defines these functions itself.

/// Parses a number at the start of a text, as std::from_chars does.
/// @param first first character
/// @param last end of the text
/// @param value output: the number; unchanged on an error
/// @return the end of the number, and the error
std::from_chars_result readNumber(const char* first, const char* last, double& value);
/// Parses a number at the start of a text, as std::from_chars does.
/// @param first first character
/// @param last end of the text
/// @param value output: the number; unchanged on an error
/// @return the end of the number, and the error
std::from_chars_result readNumber(const char* first, const char* last, float& value);
/// Parses a number at the start of a text, as std::from_chars does.
/// @param first first character
/// @param last end of the text
/// @param value output: the number; unchanged on an error
/// @return the end of the number, and the error
std::from_chars_result readNumber(const char* first, const char* last, int& value);

/// Writes the shortest text that reads back as the same number, as std::to_chars does.
/// @param first start of the buffer; 32 characters are enough for any number
/// @param last end of the buffer
/// @param value number to write
/// @return the end of the text, and the error
std::to_chars_result writeNumber(char* first, char* last, double value);
/// Writes the shortest text that reads back as the same number, as std::to_chars does.
/// @param first start of the buffer; 32 characters are enough for any number
/// @param last end of the buffer
/// @param value number to write
/// @return the end of the text, and the error
std::to_chars_result writeNumber(char* first, char* last, float value);
/// Writes the shortest text that reads back as the same number, as std::to_chars does.
/// @param first start of the buffer; 32 characters are enough for any number
/// @param last end of the buffer
/// @param value number to write
/// @return the end of the text, and the error
std::to_chars_result writeNumber(char* first, char* last, int value);

}  // namespace hostkit
