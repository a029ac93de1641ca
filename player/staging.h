#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace player {

/// Hidden folder inside the target folder. It holds the output files until all of them are complete.
class Staging {
public:
    /// Creates the hidden folder, and the target folder if it is missing. Throws Failure.
    explicit Staging(std::filesystem::path targetFolder);
    /// Removes unpublished files. Removes the folders that the constructor created if they are empty.
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    const std::filesystem::path& folder() const { return hidden; }

    /// Moves every file to the target folder and replaces files of the same name. Then removes the files of an earlier
    /// run from the target folder. These are the files for whose names `isOlder` returns true, except the files that
    /// were just moved. Throws Failure.
    void publish(const std::function<bool(const std::string&)>& isOlder);

private:
    std::filesystem::path target;
    std::filesystem::path hidden;
    /// Folders that the constructor created, the innermost first.
    std::vector<std::filesystem::path> made;
};

}  // namespace player
