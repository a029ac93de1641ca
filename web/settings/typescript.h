#pragma once

#include <string>
#include <string_view>

namespace web {

/// Returns the text as a quoted TypeScript string literal.
std::string literal(std::string_view text);

/// Returns the tables of settings and labels as a TypeScript module: the types, the tables, and the conversions between
/// settings and the array of numbers that the WebAssembly module uses.
std::string settingsModule();

}  // namespace web
