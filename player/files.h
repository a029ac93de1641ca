#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace player {

/// All bytes of a file, a pipe or a device, at most 512 MB of them. A signal that ends the run ends
/// the wait for a pipe too. Throws Failure; `what` names the file's kind, as "picture".
std::string readWhole(const std::filesystem::path& file, const std::string& what);

/// Writes a file that is there in full or not at all, in place of an older one. Throws Failure.
void writeWhole(const std::filesystem::path& file, std::string_view bytes);

/// Makes an empty file; false where one of that name is there already, so that two programs never
/// take one name. Throws Failure where it cannot be made.
bool createFile(const std::filesystem::path& file);

}  // namespace player
