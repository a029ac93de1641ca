#pragma once

#include <GLES2/gl2.h>

#include <filesystem>
#include <map>

namespace player {

/// Returns the path of the thumbnail that the window saves for a preset of the user: NAME.preset.jpg beside NAME.json.
/// A user may have the picture NAME.jpg in this folder, but the window renames and deletes only NAME.preset.jpg.
std::filesystem::path savedThumbnailOf(const std::filesystem::path& preset);

/// Textures of the presets' thumbnails, each loaded from its file at first use. tools/gallery makes the files of
/// shipped presets, and the window saves a screenshot for each preset of the user. Rendering thumbnails here would need
/// a second effect in the same context and seconds on a slow machine. Belongs to the GL context that was current at
/// construction.
class Thumbnails {
public:
    Thumbnails() = default;
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    /// Returns the square texture of the preset's thumbnail, or 0 if the preset has no thumbnail. Restores the GL
    /// state.
    GLuint of(const std::filesystem::path& preset);
    /// Loads the preset's thumbnail again at its next use.
    void forget(const std::filesystem::path& preset);

private:
    std::map<std::filesystem::path, GLuint> textures;
};

}  // namespace player
