#pragma once

#include <cstdint>
#include <filesystem>

#include "hostkit/picture.h"
#include "player/size.h"

namespace player {

/// Loads a PNG, JPEG or WebP file, upright as its camera was held, scaled to cover width x height
/// and cropped around its centre. Throws Failure.
hostkit::Picture loadPicture(const std::filesystem::path& file, int width, int height);

/// An opaque picture of one shade of grey, from 0 to 255.
hostkit::Picture plainPicture(int width, int height, std::uint8_t shade);

/// What the current GL context's screen of that size shows, opaque: its alpha is not part of that.
hostkit::Picture screenPicture(Size screen);

/// Draws `picture` scaled to width x height into `target` with its top left corner at (x, y).
void drawScaled(const hostkit::Picture& picture, hostkit::Picture& target, int x, int y, int width,
                int height);

/// Throws Failure.
void savePng(const hostkit::Picture& picture, const std::filesystem::path& file);

}  // namespace player
