#include "hostkit/number_text.h"

namespace hostkit {

std::from_chars_result readNumber(const char* first, const char* last, double& value) {
    return std::from_chars(first, last, value);
}

std::from_chars_result readNumber(const char* first, const char* last, float& value) {
    return std::from_chars(first, last, value);
}

std::from_chars_result readNumber(const char* first, const char* last, int& value) {
    return std::from_chars(first, last, value);
}

std::to_chars_result writeNumber(char* first, char* last, double value) {
    return std::to_chars(first, last, value);
}

std::to_chars_result writeNumber(char* first, char* last, float value) {
    return std::to_chars(first, last, value);
}

std::to_chars_result writeNumber(char* first, char* last, int value) {
    return std::to_chars(first, last, value);
}

}  // namespace hostkit
