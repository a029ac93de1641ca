#include "player/window/shots.h"

#include <cstdio>
#include <system_error>
#include <utility>

#include "player/failure.h"
#include "player/picture.h"
#include "player/preset.h"

namespace player {

namespace fs = std::filesystem;

Shots::Shots(fs::path intoFolder) : folder(std::move(intoFolder)) {}

fs::path Shots::freeFile(const std::string& stem, const std::string& extension) const {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw Failure("cannot write here, " + error.message(), folder.string());
    }
    for (int number = 1;; ++number) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "-%02d", number);
        fs::path file = folder / std::string(stem).append(digits).append(extension);
        if (!fs::exists(file, error)) {
            return file;
        }
    }
}

fs::path Shots::screenshot(const hostkit::Picture& picture) const {
    fs::path file = freeFile("shot", ".png");
    savePng(picture, file);
    return file;
}

fs::path Shots::preset(const Settings& settings) const {
    fs::path file = freeFile("preset", ".json");
    savePreset(settings, file);
    return file;
}

fs::path Shots::nameForGesture() const {
    return freeFile("gesture", ".gesture");
}

fs::path Shots::startFilm(Size size) {
    filmFile = freeFile("film", ".mp4");
    film = std::make_unique<Encoder>(filmFile, size, FilmTiming::asTheyCome);
    filmFrames = 0;
    return filmFile;
}

void Shots::addToFilm(const hostkit::Picture& frame) {
    try {
        film->add(frame);
        ++filmFrames;
    } catch (...) {
        film.reset();
        throw;
    }
}

std::optional<fs::path> Shots::finishFilm() {
    const std::unique_ptr<Encoder> ending = std::exchange(film, nullptr);
    ending->finish();
    if (filmFrames == 0) {
        std::error_code ignored;
        fs::remove(filmFile, ignored);
        return std::nullopt;
    }
    return filmFile;
}

}  // namespace player
