#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace desktop {

/// Reads all bytes of a file, a pipe or a device, at most 512 MB. An ending signal also ends the wait for a pipe.
/// Throws Failure. `kind` names the file's kind in the message, for example "image".
std::string readWhole(const std::filesystem::path& file, const std::string& kind);

/// Writes a file in one atomic step and replaces an older file. Throws Failure, which names the file `named`.
void writeWhole(const std::filesystem::path& file, std::string_view bytes,
                const std::filesystem::path& named);
/// Writes a file as above. A failure names the file itself.
inline void writeWhole(const std::filesystem::path& file, std::string_view bytes) {
    writeWhole(file, bytes, file);
}

/// Creates an empty file and thereby reserves its name. Returns false if the file exists already.
/// Throws Failure on any other error.
bool createFile(const std::filesystem::path& file);

}  // namespace desktop
