#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace player {

/// A hidden folder inside the target folder in which files are written until all of them are whole.
class Staging {
public:
    /// Makes the target folder too where it is missing. Throws Failure.
    explicit Staging(std::filesystem::path targetFolder);
    /// Takes away what was not published, and the target folder if it was made here for nothing.
    ~Staging();
    Staging(const Staging&) = delete;
    Staging& operator=(const Staging&) = delete;

    const std::filesystem::path& folder() const { return hidden; }

    /// Moves every file to the target folder, in place of files of the same name. Of the others there
    /// those go that `isOlder` names, by their names: an earlier run left them. Throws Failure.
    void publish(const std::function<bool(const std::string&)>& isOlder);

private:
    std::filesystem::path target;
    std::filesystem::path hidden;
    bool madeTarget = false;
};

}  // namespace player
