#pragma once

#include <string>
#include <string_view>

namespace web {

/// Returns the text as a quoted TypeScript string literal.
std::string literal(std::string_view text);

/// Returns a TypeScript module with the tables of settings and labels, their types, and conversions between settings
/// and the array of numbers that the WebAssembly module uses.
std::string settingsModule();

}  // namespace web
