#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "hostkit/picture.h"
#include "player/encoder.h"
#include "player/settings.h"
#include "player/size.h"

namespace player {

/// What the window leaves behind, numbered, in one folder. Members throw Failure; those that write
/// a file return its name.
class Shots {
public:
    explicit Shots(std::filesystem::path intoFolder);

    std::filesystem::path screenshot(const hostkit::Picture& picture) const;
    std::filesystem::path preset(const Settings& settings) const;
    std::filesystem::path nameForGesture() const;

    std::filesystem::path startFilm(Size size);
    bool filming() const { return film != nullptr; }
    /// A film that fails ends.
    void addToFilm(const hostkit::Picture& frame);
    /// Nothing when no frame came: then there is no film.
    std::optional<std::filesystem::path> finishFilm();

private:
    /// FOLDER/STEM-NN.EXTENSION with the lowest number that no file has; makes the folder.
    std::filesystem::path freeFile(const std::string& stem, const std::string& extension) const;

    std::filesystem::path folder;
    std::filesystem::path filmFile;
    std::unique_ptr<Encoder> film;
    int filmFrames = 0;
};

}  // namespace player
