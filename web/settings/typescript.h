#pragma once

#include <string>
#include <string_view>

namespace web {

/// Returns the text as a string of TypeScript, in quotes.
std::string literal(std::string_view text);

/// Returns the table of settings as a TypeScript module: the types and the table, and functions between settings and
/// the numbers that the module exchanges with the page.
std::string settingsModule();

}  // namespace web
