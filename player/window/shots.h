#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "hostkit/picture.h"
#include "player/encoder.h"
#include "player/settings.h"
#include "player/window/gl_window.h"

namespace player {

/// What the window leaves behind, numbered, in one folder. Members throw Failure; those that write
/// a file return its name.
class Shots {
public:
    explicit Shots(std::filesystem::path intoFolder);

    std::filesystem::path screenshot(hostkit::Picture picture) const;
    std::filesystem::path preset(const Settings& settings) const;
    std::filesystem::path nameForGesture() const;

    std::filesystem::path startFilm(Size size);
    bool filming() const { return film.has_value(); }
    void addToFilm(const hostkit::Picture& frame) { film->add(frame); }
    std::filesystem::path finishFilm();

private:
    /// FOLDER/STEM-NN.EXTENSION with the lowest number that no file has; makes the folder.
    std::filesystem::path freeFile(const std::string& stem, const std::string& extension) const;

    std::filesystem::path folder;
    std::filesystem::path filmFile;
    std::optional<Encoder> film;
};

}  // namespace player
