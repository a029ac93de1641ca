#include "player/staging.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "desktop/failure.h"

namespace player {

using desktop::cannotWrite;

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::error_code ignored;
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
        files.push_back(entry.path());
    }
    return files;
}

}  // namespace

Staging::Staging(fs::path targetFolder) : target(std::move(targetFolder)) {
    std::error_code error;
    for (fs::path missing = target; !missing.empty() && !fs::exists(missing, error);
         missing = missing.parent_path()) {
        made.push_back(missing);
    }
    fs::create_directories(target, error);
    if (error) {
        throw cannotWrite(target, error);
    }
    std::string name = (target / ".velmora-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw cannotWrite(target, std::error_code(errno, std::generic_category()));
    }
    hidden = name;
}

Staging::~Staging() {
    std::error_code ignored;
    fs::remove_all(hidden, ignored);
    for (const fs::path& folder : made) {
        fs::remove(folder, ignored);  // fails if the folder is not empty
    }
}

void Staging::publish(const std::function<bool(const std::string&)>& isOlder) {
    std::error_code error;
    const std::vector<fs::path> files = filesIn(hidden);
    for (const fs::path& file : files) {
        const fs::path place = target / file.filename();
        fs::rename(file, place, error);
        if (error) {
            throw cannotWrite(place, error);
        }
    }
    for (const fs::path& file : filesIn(target)) {
        const bool isNew =
            std::ranges::find(files, file.filename(), &fs::path::filename) != files.end();
        if (!isNew && isOlder(file.filename().string())) {
            fs::remove(file, error);
        }
    }
}

}  // namespace player
