#include "player/window/remembered.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>

#include "app/text.h"
#include "player/failure.h"
#include "player/files.h"
#include "player/preset.h"

namespace player {
namespace {

namespace fs = std::filesystem;

constexpr const char* settingsFile = "look.json";
constexpr const char* sizeFile = "window-size";
/// More is nothing that a window left.
constexpr std::uintmax_t maxBytes = 65536;

/// A relative folder is to be passed over. Empty: there is none.
fs::path folder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    if (config != nullptr && fs::path(config).is_absolute()) {
        return fs::path(config) / "velmora";
    }
    return home != nullptr && fs::path(home).is_absolute() ? fs::path(home) / ".config/velmora"
                                                           : fs::path();
}

/// What fails is told, and is no reason to end.
template <class Work>
void warnOnFailure(Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        warn("of the last window", error.what());
    }
}

/// Calls `take` with the file, where it is there.
template <class Read>
void readRemembered(const char* name, Read read) {
    if (folder().empty()) {
        return;
    }
    const fs::path file = folder() / name;
    warnOnFailure([&] {
        std::error_code ignored;
        if (!fs::exists(file, ignored)) {
            return;
        }
        // A pipe would be waited for.
        if (!fs::is_regular_file(file) || fs::file_size(file) > maxBytes) {
            throw Failure("no file of a window", file.string());
        }
        read(file);
    });
}

}  // namespace

Remembered recall() {
    Remembered last;
    readRemembered(settingsFile, [&](const fs::path& file) { last.settings = loadPreset(file); });
    readRemembered(sizeFile, [&](const fs::path& file) {
        const std::string text = readWhole(file, "size");
        last.window = parseSize(text.substr(0, text.find('\n')));
        if (!last.window) {
            throw Failure("no size, " + app::inQuotes(text), file.string());
        }
    });
    return last;
}

void remember(const Remembered& last) {
    const fs::path into = folder();
    if (into.empty() || (!last.settings && !last.window)) {
        return;
    }
    warnOnFailure([&] {
        std::error_code error;
        fs::create_directories(into, error);
        if (error) {
            throw Failure("cannot write here, " + error.message(), into.string());
        }
        if (last.settings) {
            savePreset(*last.settings, into / settingsFile);
        }
        if (last.window) {
            writeWhole(into / sizeFile, std::to_string(last.window->width) + "x" +
                                            std::to_string(last.window->height) + "\n");
        }
    });
}

}  // namespace player
