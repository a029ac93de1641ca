#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/size.h"
#include "hostkit/image.h"
#include "player/encoder.h"

namespace player {

/// Writes the window's output as numbered files in one folder. Members throw Failure. Members that write a file return
/// its name.
class Shots {
public:
    /// Sets the folder and the format of films: mp4, webm or gif.
    Shots(std::filesystem::path intoFolder, std::string filmFormat);

    /// Returns the names of all complete files, oldest first.
    const std::vector<std::filesystem::path>& files() const { return saved; }
    /// Adds a complete file that another class wrote.
    void add(const std::filesystem::path& file) { saved.push_back(file); }

    std::filesystem::path screenshot(const hostkit::Image& image);
    std::filesystem::path preset(const app::Settings& settings, const std::string& name);
    /// Returns an unused name for a preset: preset-01, preset-02 and so on.
    std::string newPresetName() const;
    /// Renames a preset and its thumbnail. Returns the new file.
    std::filesystem::path renamePreset(const std::filesystem::path& preset,
                                       const std::string& name);
    /// Deletes a preset and its thumbnail.
    void deletePreset(const std::filesystem::path& preset);
    /// Saves a preset's thumbnail. Does nothing if the thumbnail's file already exists.
    void thumbnail(const std::filesystem::path& preset, const hostkit::Image& image);
    /// Creates an empty file for a recording.
    std::filesystem::path createGestureFile() const;

    std::filesystem::path startFilm(app::Size size);
    bool filming() const { return film != nullptr; }
    /// Adds a frame to the film. The film shows this frame from now until the next frame is added. Scales a frame of
    /// another size to fit the film. If the encoder fails, ends the film. The incomplete film then stays if it plays.
    void addToFilm(hostkit::Image frame);
    /// Completes the film and returns its name. Removes a film without frames and returns nothing. If the encoder
    /// fails, the incomplete film stays if it plays.
    std::optional<std::filesystem::path> finishFilm();

private:
    void createFolder() const;
    /// Returns FOLDER/STEM-NN.EXTENSION. Numbers count from 1.
    std::filesystem::path numbered(const std::string& stem, int number,
                                   const std::string& extension) const;
    /// Creates the empty file FOLDER/STEM-NN.EXTENSION with the lowest free number. Creates the folder first if it is
    /// missing.
    std::filesystem::path createNumberedFile(const std::string& stem,
                                             const std::string& extension) const;

    std::filesystem::path folder;
    std::string format;
    std::vector<std::filesystem::path> saved;
    std::filesystem::path filmFile;
    app::Size filmSize{};
    std::unique_ptr<Encoder> film;
    /// Last frame of the film. Empty before the first frame.
    hostkit::Image lastFrame;
};

}  // namespace player
