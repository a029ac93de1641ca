#include "player/staging.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "player/failure.h"

namespace player {
namespace {

namespace fs = std::filesystem;

Failure cannotWrite(const fs::path& where, const std::error_code& error) {
    return Failure("cannot write here, " + error.message(), where.string());
}

}  // namespace

Staging::Staging(fs::path targetFolder) : target(std::move(targetFolder)) {
    std::error_code error;
    madeTarget = fs::create_directories(target, error);
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
    if (madeTarget) {
        fs::remove(target, ignored);  // stays where it holds anything
    }
}

void Staging::publish() {
    std::error_code error;
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(hidden, error)) {
        files.push_back(entry.path());
    }
    for (const fs::path& file : files) {
        const fs::path place = target / file.filename();
        fs::rename(file, place, error);
        if (error) {
            throw cannotWrite(place, error);
        }
    }
}

}  // namespace player
