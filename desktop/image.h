#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "app/size.h"
#include "hostkit/image.h"

namespace desktop {

/// Loads an image file (PNG, JPEG, WebP and GIF). Applies the orientation in its metadata and replaces transparency by
/// black. Warns if the end of the file is missing and returns the readable part. If there is no such file and `file` is
/// the name of a painting, returns the painting. Throws Failure.
hostkit::Image loadImage(const std::filesystem::path& file);

/// Returns a painting by its number from 0. The first paintings are the default backgrounds, as on the page.
hostkit::Image numberedPainting(std::size_t number);

/// Returns the image scaled to cover width x height, cropped around its centre.
hostkit::Image covering(const hostkit::Image& image, int width, int height);

/// Returns the image scaled to fit into width x height, with black bars at two sides.
hostkit::Image fitting(const hostkit::Image& image, int width, int height);

/// Returns an opaque image of one grey level, 0 to 255.
hostkit::Image plainImage(int width, int height, std::uint8_t shade);

/// Reads the frame on the screen of the current GL context. Sets its alpha to 255.
hostkit::Image readFrame(app::Size screen);

/// Draws `image` scaled to width x height into `target` with its top left corner at (x, y).
void drawScaled(const hostkit::Image& image, hostkit::Image& target, int x, int y, int width,
                int height);

/// Saves an image. Writes the whole file or none. Throws Failure, which names the file `named`.
void savePng(const hostkit::Image& image, const std::filesystem::path& file,
             const std::filesystem::path& named);
/// Saves an image. Writes the whole file or none. Throws Failure.
void saveJpeg(const hostkit::Image& image, const std::filesystem::path& file);

}  // namespace desktop
