#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace desktop {

/// Returns true if there is a file, pipe or device with this path. Returns false for a folder.
bool isFile(const std::filesystem::path& path);

/// Reads a whole file, pipe or device of at most 512 MB. A signal that ends the program also ends the wait for a pipe.
/// Throws Failure. `kind` is the kind of file for the message, for example "image".
std::string readWhole(const std::filesystem::path& file, const std::string& kind);

/// Writes a file in one atomic step. Replaces an older file. On an error, throws Failure with a message that contains
/// the file name `named`.
void writeWhole(const std::filesystem::path& file, std::string_view bytes,
                const std::filesystem::path& named);
/// Writes a file in one atomic step. Replaces an older file. Throws Failure.
inline void writeWhole(const std::filesystem::path& file, std::string_view bytes) {
    writeWhole(file, bytes, file);
}

/// Creates an empty file to reserve its name. Returns false if the file exists already. Throws Failure on any other
/// error.
bool createFile(const std::filesystem::path& file);

}  // namespace desktop
