#pragma once

#include <cstdint>
#include <filesystem>

#include "app/backgrounds.h"
#include "app/size.h"
#include "hostkit/picture.h"
#include "player/options.h"

namespace player {

/// Loads a PNG, JPEG or WebP file, upright as its camera was held, on black where it is
/// transparent; one that is cut off is shown as far as it goes, with a warning. Throws Failure.
hostkit::Picture loadImage(const std::filesystem::path& file);

/// Loads the backgrounds that the command line names. For one that it does not name, takes a photograph of the desktop,
/// or draws one if the desktop has none.
app::Backgrounds loadBackgrounds(const Options& options);

/// The picture scaled to cover width x height, cropped around its centre.
hostkit::Picture covering(const hostkit::Picture& picture, int width, int height);

/// An opaque picture of one shade of grey, from 0 to 255.
hostkit::Picture plainImage(int width, int height, std::uint8_t shade);

/// What the current GL context's screen of that size shows, opaque: its alpha is not part of that.
hostkit::Picture readFrame(app::Size screen);

/// Draws `picture` scaled to width x height into `target` with its top left corner at (x, y).
void drawScaled(const hostkit::Picture& picture, hostkit::Picture& target, int x, int y, int width,
                int height);

/// A file in full or none. Throws Failure.
void saveJpeg(const hostkit::Picture& picture, const std::filesystem::path& file);
void savePng(const hostkit::Picture& picture, const std::filesystem::path& file);

}  // namespace player
