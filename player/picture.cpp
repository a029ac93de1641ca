#include "player/picture.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "hostkit/gl_context.h"
#include "player/failure.h"

namespace player {

using hostkit::Picture;

namespace {

// Four bytes a pixel: 400 MB, more than any camera gives and less than most machines have.
constexpr std::int64_t mostPixels = 100'000'000;

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPointer = std::unique_ptr<GdkPixbuf, Unref>;

/// Takes over the error of a failed call.
Failure failure(GError* error, const std::filesystem::path& file) {
    const std::string what = error != nullptr ? error->message : "cannot read the picture";
    g_clear_error(&error);
    return Failure(what, file.string());
}

/// A view of `picture`, which must outlive it.
PixbufPointer pixbufOf(const Picture& picture) {
    // The toolkit has no read-only pixbuf over rows; what is done with this one follows its owner's
    // constness.
    auto* rows = const_cast<std::uint8_t*>(picture.rgba.data());
    return PixbufPointer(gdk_pixbuf_new_from_data(rows, GDK_COLORSPACE_RGB, TRUE, 8, picture.width,
                                                  picture.height, 4 * picture.width, nullptr,
                                                  nullptr));
}

void refuseUnlessPicture(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        throw Failure("no such picture", file.string());
    }
    int width = 0;
    int height = 0;
    if (gdk_pixbuf_get_file_info(file.c_str(), &width, &height) == nullptr) {
        throw Failure("not a readable picture", file.string());
    }
    if (std::int64_t{width} * height > mostPixels) {
        throw Failure("the picture is too large, " + std::to_string(width) + " x " +
                          std::to_string(height) + " pixels, over 100 million",
                      file.string());
    }
}

/// The picture of a file as its camera was held.
PixbufPointer decode(const std::filesystem::path& file) {
    refuseUnlessPicture(file);
    GError* error = nullptr;
    const PixbufPointer asStored(gdk_pixbuf_new_from_file(file.c_str(), &error));
    if (!asStored) {
        throw failure(error, file);
    }
    return PixbufPointer(gdk_pixbuf_apply_embedded_orientation(asStored.get()));
}

}  // namespace

Picture loadPicture(const std::filesystem::path& file, int width, int height) {
    const PixbufPointer source = decode(file);
    const double columns = gdk_pixbuf_get_width(source.get());
    const double rows = gdk_pixbuf_get_height(source.get());
    const double scale = std::max(width / columns, height / rows);
    Picture picture = plainPicture(width, height, 0);  // shows where the file is transparent
    gdk_pixbuf_composite(source.get(), pixbufOf(picture).get(), 0, 0, width, height,
                         (width - columns * scale) / 2, (height - rows * scale) / 2, scale, scale,
                         GDK_INTERP_BILINEAR, 255);
    return picture;
}

Picture plainPicture(int width, int height, std::uint8_t shade) {
    Picture picture{width, height, {}};
    picture.rgba.resize(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const guint32 grey = guint32{shade} * 0x01010100;
    gdk_pixbuf_fill(pixbufOf(picture).get(), grey | 0xFF);
    return picture;
}

Picture screenPicture(Size screen) {
    Picture picture{screen.width, screen.height, hostkit::readScreen(screen.width, screen.height)};
    for (std::size_t alpha = 3; alpha < picture.rgba.size(); alpha += 4) {
        picture.rgba[alpha] = 255;
    }
    return picture;
}

void drawScaled(const Picture& picture, Picture& target, int x, int y, int width, int height) {
    gdk_pixbuf_scale(pixbufOf(picture).get(), pixbufOf(target).get(), x, y, width, height, x, y,
                     static_cast<double>(width) / picture.width,
                     static_cast<double>(height) / picture.height, GDK_INTERP_BILINEAR);
}

void savePng(const Picture& picture, const std::filesystem::path& file) {
    GError* error = nullptr;
    if (!gdk_pixbuf_save(pixbufOf(picture).get(), file.c_str(), "png", &error, nullptr)) {
        throw failure(error, file);
    }
}

}  // namespace player
