#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "app/size.h"
#include "hostkit/image.h"

namespace desktop {

/// Loads an image file (PNG, JPEG, WebP or GIF). Applies the orientation in its metadata and replaces transparency by
/// black. If the end of the file is missing, warns and returns the readable part. If the file does not exist and `file`
/// is the name of a built-in painting, returns that painting. Throws Failure.
hostkit::Image loadImage(const std::filesystem::path& file);

/// Returns a painting by its number from 0. The first paintings are the default backgrounds, as on the web page.
hostkit::Image numberedPainting(std::size_t number);

/// Scales an image so that it covers width x height and crops it around its centre.
hostkit::Image covering(const hostkit::Image& image, int width, int height);

/// Scales an image so that it fits into width x height and adds black bars on two sides.
hostkit::Image fitting(const hostkit::Image& image, int width, int height);

/// Returns an opaque image that is filled with one grey level, 0 to 255.
hostkit::Image plainImage(int width, int height, std::uint8_t shade);

/// Reads the pixels on the screen of the current GL context and sets their alpha to 255.
hostkit::Image readFrame(app::Size screen);

/// Scales `image` to width x height and draws it into `target`. (x, y) is the position of its top left corner.
void drawScaled(const hostkit::Image& image, hostkit::Image& target, int x, int y, int width,
                int height);

/// Saves an image. Writes the complete file or, on an error, no file. On an error, throws Failure with a message that
/// contains the file name `named`.
void savePng(const hostkit::Image& image, const std::filesystem::path& file,
             const std::filesystem::path& named);
/// Saves an image. Writes the complete file or, on an error, no file. Throws Failure.
void saveJpeg(const hostkit::Image& image, const std::filesystem::path& file);

}  // namespace desktop
