#include "screensaver/pictures.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "desktop/failure.h"
#include "desktop/image.h"
#include "screensaver/grab.h"

namespace saver {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Grey level, 0 to 255, of the plain picture that replaces a missing picture.
constexpr std::uint8_t plainShade = 96;
/// Side of the plain picture in pixels. The plain picture is stretched over the screen.
constexpr int plainSide = 16;

bool isPicture(const fs::path& file) {
    std::string extension = file.extension().string();
    std::ranges::transform(extension, extension.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    constexpr std::array<std::string_view, 5> known = {".jpg", ".jpeg", ".png", ".webp", ".gif"};
    return std::ranges::find(known, extension) != known.end();
}

/// Returns `source` itself if it is a file. If it is a folder, returns the pictures in the folder and its subfolders.
std::vector<fs::path> filesOf(const fs::path& source) {
    std::error_code error;
    if (!fs::is_directory(source, error)) {
        // Refuse pipes and devices, because reading from them can block forever.
        if (fs::exists(source, error) && !fs::is_regular_file(source, error)) {
            desktop::warn("expected a picture file or a folder", source.string());
            return {};
        }
        return {source};
    }
    std::vector<fs::path> files;
    fs::recursive_directory_iterator entry(source, fs::directory_options::skip_permission_denied,
                                           error);
    for (; !error && entry != fs::recursive_directory_iterator{}; entry.increment(error)) {
        std::error_code unreadable;
        if (isPicture(entry->path()) && entry->is_regular_file(unreadable)) {
            files.push_back(entry->path());
        }
    }
    if (files.empty()) {
        desktop::warn("the folder has no PNG, JPEG, WebP or GIF file", source.string());
    }
    return files;
}

}  // namespace

hostkit::Image plainPicture() {
    return desktop::plainImage(plainSide, plainSide, plainShade);
}

Pictures::Pictures(const fs::path& source, unsigned long window)
    : grabWindow(source.empty() ? window : 0) {
    if (!source.empty()) {
        files = filesOf(source);
    }
}

Pictures::~Pictures() {
    cancelled = true;
    if (loading.valid()) {
        loading.wait();
    }
}

void Pictures::startNext() {
    if (loading.valid()) {
        return;  // the loading thread uses the files
    }
    const bool changes = grabWindow != 0 || files.size() > 1;
    if (changes || !started) {
        started = true;
        loading = std::async(std::launch::async, [this] { return loadNext(); });
    }
}

std::optional<hostkit::Image> Pictures::take() {
    if (!loading.valid() || loading.wait_for(0s) != std::future_status::ready) {
        return std::nullopt;
    }
    return loading.get();
}

/// Loads the next picture on the loading thread. If the picture is missing, warns and returns the plain picture.
hostkit::Image Pictures::loadNext() {
    try {
        if (grabWindow != 0) {
            return grabPicture(grabWindow, cancelled);
        }
        if (const auto file = loadFile()) {
            return *file;
        }
    } catch (const desktop::Failure& failure) {
        if (!cancelled) {
            desktop::warn(failure.what());
        }
    }
    return plainPicture();
}

/// Loads the next file that can be read, and removes unreadable files from the list. Returns nothing if no file can be
/// read.
std::optional<hostkit::Image> Pictures::loadFile() {
    while (!files.empty()) {
        next %= files.size();
        if (next == 0) {
            std::ranges::shuffle(files, random);
        }
        try {
            hostkit::Image image = desktop::loadImage(files[next]);
            ++next;
            return image;
        } catch (const desktop::Failure& failure) {
            desktop::warn(failure.what());
            files.erase(files.begin() + static_cast<std::ptrdiff_t>(next));
        }
    }
    return std::nullopt;
}

}  // namespace saver
