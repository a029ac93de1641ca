#include "player/window/remembered.h"

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>

#include "app/text.h"
#include "desktop/failure.h"
#include "desktop/files.h"
#include "desktop/preset.h"

namespace player {

using desktop::Failure;
using desktop::loadPreset;
using desktop::readWhole;
using desktop::savePreset;
using desktop::warn;
using desktop::writeWhole;

namespace {

namespace fs = std::filesystem;

constexpr const char* settingsFile = "look.json";
constexpr const char* sizeFile = "window-size";
/// Maximum size in bytes of a file to read. The files that the player writes are smaller.
constexpr std::uintmax_t maxBytes = 65536;

/// Returns the player's configuration folder, or an empty path if there is none. Ignores relative paths in
/// XDG_CONFIG_HOME and HOME.
fs::path folder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    if (config != nullptr && fs::path(config).is_absolute()) {
        return fs::path(config) / "velmora";
    }
    return home != nullptr && fs::path(home).is_absolute() ? fs::path(home) / ".config/velmora"
                                                           : fs::path();
}

/// Calls `work`. If `work` throws an error, prints the error as a warning.
template <class Work>
void warnOnFailure(Work work) {
    try {
        work();
    } catch (const std::exception& error) {
        warn("cannot restore or save the last window", error.what());
    }
}

/// Calls `read` with the named file if it exists.
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
        // Reading a pipe would block.
        if (!fs::is_regular_file(file) || fs::file_size(file) > maxBytes) {
            throw Failure("this is not a file that the player wrote", file.string());
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
            throw Failure("expected WIDTHxHEIGHT, not " + app::inQuotes(text), file.string());
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
            throw desktop::cannotWrite(into, error);
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
