#include "player/draw/thumbnails.h"

#include <exception>
#include <system_error>

#include "app/gl_state.h"
#include "desktop/image.h"
#include "desktop/preset.h"
#include "hostkit/image.h"

namespace player {

using desktop::covering;
using desktop::loadImage;
using desktop::thumbnailOf;
using desktop::thumbnailPixels;

namespace {

GLuint textureOf(const hostkit::Image& image) {
    const app::GlStateGuard guard;
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, image.width, image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 image.rgba.data());
    glGenerateMipmap(GL_TEXTURE_2D);
    return texture;
}

GLuint load(const std::filesystem::path& file) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored)) {
        return 0;
    }
    try {
        return textureOf(covering(loadImage(file), thumbnailPixels, thumbnailPixels));
    } catch (const std::exception&) {
        return 0;  // an unreadable thumbnail counts as missing
    }
}

}  // namespace

std::filesystem::path savedThumbnailOf(const std::filesystem::path& preset) {
    return std::filesystem::path(preset).replace_extension(".preset.jpg");
}

Thumbnails::~Thumbnails() {
    for (const auto& [preset, texture] : textures) {
        glDeleteTextures(1, &texture);
    }
}

GLuint Thumbnails::of(const std::filesystem::path& preset) {
    const auto [place, isNew] = textures.try_emplace(preset, 0);
    if (isNew) {
        const GLuint saved = load(savedThumbnailOf(preset));
        place->second = saved != 0 ? saved : load(thumbnailOf(preset));
    }
    return place->second;
}

void Thumbnails::forget(const std::filesystem::path& preset) {
    if (const auto place = textures.find(preset); place != textures.end()) {
        glDeleteTextures(1, &place->second);
        textures.erase(place);
    }
}

}  // namespace player
