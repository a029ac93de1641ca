#include "player/window/shots.h"

#include <cstdio>
#include <system_error>
#include <utility>

#include "desktop/failure.h"
#include "desktop/files.h"
#include "desktop/image.h"
#include "desktop/preset.h"

namespace player {

using desktop::covering;
using desktop::createFile;
using desktop::Failure;
using desktop::saveJpeg;
using desktop::savePng;
using desktop::savePreset;
using desktop::thumbnailOf;
using desktop::thumbnailPixels;

namespace fs = std::filesystem;

namespace {

/// Calls `work` to write a newly created file. Removes the file if that fails.
template <class Work>
void fill(const fs::path& file, Work work) {
    try {
        work();
    } catch (...) {
        std::error_code ignored;
        fs::remove(file, ignored);
        throw;
    }
}

/// Removes the film of a failed encoder if it is empty. A partial film may still play.
void removeIfEmpty(const fs::path& file) {
    std::error_code ignored;
    if (fs::is_empty(file, ignored)) {
        fs::remove(file, ignored);
    }
}

}  // namespace

Shots::Shots(fs::path intoFolder, std::string filmFormat)
    : folder(std::move(intoFolder)), format(std::move(filmFormat)) {}

fs::path Shots::createNumberedFile(const std::string& stem, const std::string& extension) const {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw Failure("cannot write to this path, " + error.message(), folder.string());
    }
    for (int number = 1;; ++number) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "-%02d", number);
        fs::path file = folder / std::string(stem).append(digits).append(extension);
        if (createFile(file)) {
            return file;
        }
    }
}

fs::path Shots::screenshot(const hostkit::Image& image) {
    fs::path file = createNumberedFile("shot", ".png");
    fill(file, [&] { savePng(image, file); });
    add(file);
    return file;
}

fs::path Shots::preset(const app::Settings& settings) {
    fs::path file = createNumberedFile("preset", ".json");
    fill(file, [&] { savePreset(settings, file); });
    add(file);
    return file;
}

void Shots::thumbnail(const fs::path& preset, const hostkit::Image& image) {
    const fs::path file = thumbnailOf(preset);
    if (createFile(file)) {
        fill(file, [&] { saveJpeg(covering(image, thumbnailPixels, thumbnailPixels), file); });
        add(file);
    }
}

fs::path Shots::createGestureFile() const {
    return createNumberedFile("gesture", ".gesture");
}

fs::path Shots::startFilm(app::Size size) {
    filmFile = createNumberedFile("film", "." + format);
    fill(filmFile,
         [&] { film = std::make_unique<Encoder>(filmFile, size, FilmTiming::wallClock); });
    lastFrame = {};
    return filmFile;
}

void Shots::addToFilm(hostkit::Image frame) {
    try {
        film->add(frame);
        lastFrame = std::move(frame);
    } catch (...) {
        film.reset();
        removeIfEmpty(filmFile);
        throw;
    }
}

std::optional<fs::path> Shots::finishFilm() {
    const std::unique_ptr<Encoder> ending = std::exchange(film, nullptr);
    try {
        if (!lastFrame.empty()) {
            ending->add(lastFrame);  // extends the last frame to the end of the film
        }
        ending->finish();
    } catch (...) {
        removeIfEmpty(filmFile);
        throw;
    }
    if (lastFrame.empty()) {
        std::error_code ignored;
        fs::remove(filmFile, ignored);
        return std::nullopt;
    }
    add(filmFile);
    return filmFile;
}

}  // namespace player
