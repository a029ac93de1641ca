#include "player/window/shots.h"

#include <algorithm>
#include <cstdio>
#include <system_error>
#include <utility>

#include "desktop/failure.h"
#include "desktop/files.h"
#include "desktop/image.h"
#include "desktop/preset.h"
#include "player/draw/thumbnails.h"

namespace player {

using desktop::covering;
using desktop::createFile;
using desktop::Failure;
using desktop::saveJpeg;
using desktop::savePng;
using desktop::savePreset;
using desktop::thumbnailPixels;

namespace fs = std::filesystem;

namespace {

/// Calls `work` to write a newly created file. Removes the file if `work` throws.
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

/// Removes the incomplete film of a failed encoder if the film does not play. Returns the encoder's error. If the film
/// stays, the message says so.
Failure afterError(const fs::path& film, const Failure& error) {
    if (plays(film)) {
        return Failure(std::string(error.what()) + ". The file contains the film up to this error");
    }
    std::error_code ignored;
    fs::remove(film, ignored);
    return error;
}

}  // namespace

Shots::Shots(fs::path intoFolder, std::string filmFormat)
    : folder(std::move(intoFolder)), format(std::move(filmFormat)) {}

void Shots::createFolder() const {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw desktop::cannotWrite(folder, error);
    }
}

fs::path Shots::numbered(const std::string& stem, int number, const std::string& extension) const {
    char digits[16];
    std::snprintf(digits, sizeof digits, "-%02d", number);
    return folder / std::string(stem).append(digits).append(extension);
}

fs::path Shots::createNumberedFile(const std::string& stem, const std::string& extension) const {
    createFolder();
    for (int number = 1;; ++number) {
        fs::path file = numbered(stem, number, extension);
        if (createFile(file)) {
            return file;
        }
    }
}

fs::path Shots::screenshot(const hostkit::Image& image) {
    fs::path file = createNumberedFile("shot", ".png");
    fill(file, [&] { savePng(image, file, file); });
    add(file);
    return file;
}

std::string Shots::newPresetName() const {
    std::error_code ignored;
    for (int number = 1;; ++number) {
        const fs::path file = numbered("preset", number, ".json");
        if (!fs::exists(file, ignored)) {
            return file.stem().string();
        }
    }
}

fs::path Shots::preset(const app::Settings& settings, const std::string& name) {
    createFolder();
    fs::path file = folder / (name + ".json");
    if (!createFile(file)) {
        throw Failure("the preset would overwrite a file; choose another name", file.string());
    }
    fill(file, [&] { savePreset(settings, file); });
    add(file);
    return file;
}

fs::path Shots::renamePreset(const fs::path& preset, const std::string& name) {
    fs::path file = folder / (name + ".json");
    std::error_code error;
    if (fs::exists(file, error)) {
        throw Failure("the preset would overwrite a file; choose another name", file.string());
    }
    fs::rename(preset, file, error);
    if (error) {
        throw Failure("cannot rename the preset, " + error.message(), preset.string());
    }
    // This call fails if there is no thumbnail.
    fs::rename(savedThumbnailOf(preset), savedThumbnailOf(file), error);
    std::ranges::replace(saved, preset, file);
    std::ranges::replace(saved, savedThumbnailOf(preset), savedThumbnailOf(file));
    return file;
}

void Shots::deletePreset(const fs::path& preset) {
    std::error_code error;
    fs::remove(preset, error);
    if (error) {
        throw Failure("cannot delete the preset, " + error.message(), preset.string());
    }
    fs::remove(savedThumbnailOf(preset), error);
    const auto isDeleted = [&](const fs::path& file) {
        return file == preset || file == savedThumbnailOf(preset);
    };
    saved.erase(std::remove_if(saved.begin(), saved.end(), isDeleted), saved.end());
}

void Shots::thumbnail(const fs::path& preset, const hostkit::Image& image) {
    const fs::path file = savedThumbnailOf(preset);
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
         [&] { film = std::make_unique<Encoder>(filmFile, filmFile, size, std::nullopt); });
    filmSize = size;
    lastFrame = {};
    return filmFile;
}

void Shots::addToFilm(hostkit::Image frame) {
    if (frame.width != filmSize.width || frame.height != filmSize.height) {
        frame = desktop::fitting(frame, filmSize.width, filmSize.height);
    }
    try {
        film->add(frame);
        lastFrame = std::move(frame);
    } catch (const Failure& error) {
        film.reset();
        throw afterError(filmFile, error);
    }
}

std::optional<fs::path> Shots::finishFilm() {
    const std::unique_ptr<Encoder> ending = std::exchange(film, nullptr);
    try {
        if (!lastFrame.empty()) {
            ending->add(lastFrame);  // extends the last frame to the end of the film
        }
        ending->finish();
    } catch (const Failure& error) {
        throw afterError(filmFile, error);
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
