#pragma once

#include <GLES2/gl2.h>

#include <filesystem>
#include <map>

namespace player {

/// The pictures of presets, each loaded when it is first asked for. They are files, made by
/// tools/gallery for those that ship and of the screen for those that a window saves: to render
/// them here would take a second effect in the same context and seconds of a slow machine. Belongs
/// to a GL context as ImGuiRenderer does.
class Thumbnails {
public:
    Thumbnails() = default;
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    /// A square texture; 0 where the preset has no picture. Leaves GL as it was.
    GLuint of(const std::filesystem::path& preset);

private:
    std::map<std::filesystem::path, GLuint> textures;
};

}  // namespace player
