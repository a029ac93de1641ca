#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/size.h"
#include "hostkit/picture.h"
#include "player/encoder.h"

namespace player {

/// What the window leaves behind, numbered, in one folder. Members throw Failure; those that write
/// a file return its name.
class Shots {
public:
    /// `filmFormat`: mp4, webm or gif.
    Shots(std::filesystem::path intoFolder, std::string filmFormat);

    /// Of all whole files, in the order in which they were made.
    const std::vector<std::filesystem::path>& files() const { return saved; }
    /// Says that a file is whole which others wrote.
    void add(const std::filesystem::path& file) { saved.push_back(file); }

    std::filesystem::path screenshot(const hostkit::Picture& picture);
    std::filesystem::path preset(const app::Settings& settings);
    /// A preset's, of what the screen shows; nothing where another file has its name.
    void thumbnail(const std::filesystem::path& preset, const hostkit::Picture& picture);
    std::filesystem::path nameForGesture() const;

    std::filesystem::path startFilm(app::Size size);
    bool filming() const { return film != nullptr; }
    /// From now on the film shows this. A film that fails ends.
    void addToFilm(hostkit::Picture frame);
    /// Nothing when no frame came: then there is no film.
    std::optional<std::filesystem::path> finishFilm();

private:
    /// Makes FOLDER/STEM-NN.EXTENSION with the lowest number that no file has, and the folder.
    std::filesystem::path createNumberedFile(const std::string& stem,
                                             const std::string& extension) const;

    std::filesystem::path folder;
    std::string format;
    std::vector<std::filesystem::path> saved;
    std::filesystem::path filmFile;
    std::unique_ptr<Encoder> film;
    /// Empty before the first one.
    hostkit::Picture lastFrame;
};

}  // namespace player
