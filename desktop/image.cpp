#include "desktop/image.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "desktop/failure.h"
#include "desktop/files.h"
#include "hostkit/gl_context.h"
#include "hostkit/screen.h"
#include "paintings/paintings.h"

namespace desktop {

using hostkit::Image;

namespace {

// Maximum number of pixels of an image: 400 MB when decoded at 4 bytes per pixel. Few cameras take larger images, and
// most machines have that much memory.
constexpr std::int64_t maxPixels = 100'000'000;
/// Longest side of a loaded image in pixels. Larger images are scaled down, because few screens are larger.
constexpr int maxImageSide = 4096;
/// Width and height of a generated painting in pixels. A screen shows a part of the painting.
constexpr int paintingSide = 1600;

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using PixbufPointer = std::unique_ptr<GdkPixbuf, Unref>;

/// Returns a GdkPixbuf that shares the pixels of `image`. The image must outlive it.
PixbufPointer pixbufOf(const Image& image) {
    // GdkPixbuf has no read-only variant, so the const must be cast away. Callers write through the result only if
    // their image is not const.
    auto* rows = const_cast<std::uint8_t*>(image.rgba.data());
    return PixbufPointer(gdk_pixbuf_new_from_data(rows, GDK_COLORSPACE_RGB, TRUE, 8, image.width,
                                                  image.height, 4 * image.width, nullptr, nullptr));
}

/// Returns the message of a GError and frees the GError.
std::string messageOf(GError* error) {
    std::string message = error != nullptr ? error->message : "unknown error";
    g_clear_error(&error);
    return message;
}

struct StoredSize {
    int width = 0;
    int height = 0;
    bool tooLarge() const { return std::int64_t{width} * height > maxPixels; }
};

/// Decodes an image. Stops before memory is allocated for an image that is too large.
class Loader {
public:
    Loader() : loader(gdk_pixbuf_loader_new()) {
        g_signal_connect(loader, "size-prepared", G_CALLBACK(&Loader::takeSize), &stored);
    }
    ~Loader() { g_object_unref(loader); }
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    /// Returns the image or, if the data is damaged, its readable part. Returns null and sets `reason` if no part is
    /// readable.
    PixbufPointer read(const std::string& bytes, std::string& reason) {
        const auto* data = reinterpret_cast<const guchar*>(bytes.data());
        GError* error = nullptr;
        gdk_pixbuf_loader_write(loader, data, bytes.size(), &error);
        gdk_pixbuf_loader_close(loader, error == nullptr ? &error : nullptr);
        if (GdkPixbuf* pixbuf = gdk_pixbuf_loader_get_pixbuf(loader); pixbuf != nullptr) {
            g_clear_error(&error);
            return PixbufPointer(gdk_pixbuf_apply_embedded_orientation(pixbuf));
        }
        reason = messageOf(error);
        return nullptr;
    }
    const StoredSize& size() const { return stored; }

private:
    static void takeSize(GdkPixbufLoader* from, gint width, gint height, gpointer into) {
        auto& size = *static_cast<StoredSize*>(into);
        size = {width, height};
        if (size.tooLarge()) {
            gdk_pixbuf_loader_set_size(from, 0, 0);  // every decoder rejects this size
        }
    }

    GdkPixbufLoader* loader;
    StoredSize stored;
};

/// Returns true if the end of the file is missing. The decoders report no error in this case and fill the missing part
/// with grey or black.
bool isCutOff(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xD8")) {  // JPEG: the end marker after the last scan
        const std::size_t scan = bytes.rfind("\xFF\xDA");
        return scan == std::string_view::npos ||
               bytes.find("\xFF\xD9", scan) == std::string_view::npos;
    }
    if (bytes.starts_with("\x89PNG")) {
        return bytes.rfind("IEND") == std::string_view::npos;
    }
    if (bytes.starts_with("RIFF") && bytes.size() > 8) {  // WebP: the length field, little-endian
        std::uint64_t length = 0;
        for (std::size_t at = 7; at >= 4; --at) {
            length = 256 * length + static_cast<unsigned char>(bytes[at]);
        }
        return bytes.size() < length + 8;
    }
    return false;
}

/// Decodes an image file and applies the orientation that its metadata gives.
PixbufPointer decode(const std::filesystem::path& file) {
    const std::string bytes = readWhole(file, "image");
    Loader loader;
    std::string reason;
    PixbufPointer upright = loader.read(bytes, reason);
    const StoredSize& size = loader.size();
    if (size.tooLarge()) {
        throw Failure("the image is too large, " + std::to_string(size.width) + " x " +
                          std::to_string(size.height) + " pixels; the limit is 100 million pixels",
                      file.string());
    }
    if (!upright) {
        throw Failure("not a readable image, " + reason, file.string());
    }
    if (isCutOff(bytes)) {
        warn("the end of the image file is missing", file.string());
    }
    return upright;
}

}  // namespace

Image loadImage(const std::filesystem::path& file) {
    const paintings::Painting* const painting = paintings::findPainting(file.string());
    if (painting != nullptr && !isFile(file)) {
        return painting->paint(paintingSide, paintingSide);
    }
    const PixbufPointer upright = decode(file);
    const int columns = gdk_pixbuf_get_width(upright.get());
    const int rows = gdk_pixbuf_get_height(upright.get());
    const double scale = std::min(1.0, static_cast<double>(maxImageSide) / std::max(columns, rows));
    const auto scaled = [&](int side) {
        return std::max(1, static_cast<int>(std::lround(side * scale)));
    };
    Image image = plainImage(scaled(columns), scaled(rows), 0);  // black under transparent pixels
    gdk_pixbuf_composite(upright.get(), pixbufOf(image).get(), 0, 0, image.width, image.height, 0.0,
                         0.0, static_cast<double>(image.width) / columns,
                         static_cast<double>(image.height) / rows, GDK_INTERP_BILINEAR, 255);
    return image;
}

Image numberedPainting(std::size_t number) {
    return paintings::allPaintings[number].paint(paintingSide, paintingSide);
}

Image covering(const Image& image, int width, int height) {
    const double scale = std::max(static_cast<double>(width) / image.width,
                                  static_cast<double>(height) / image.height);
    Image cover = plainImage(width, height, 0);
    gdk_pixbuf_scale(pixbufOf(image).get(), pixbufOf(cover).get(), 0, 0, width, height,
                     (width - image.width * scale) / 2, (height - image.height * scale) / 2, scale,
                     scale, GDK_INTERP_BILINEAR);
    return cover;
}

Image plainImage(int width, int height, std::uint8_t shade) {
    Image image{width, height, {}};
    image.rgba.resize(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const guint32 grey = guint32{shade} * 0x01010100;
    gdk_pixbuf_fill(pixbufOf(image).get(), grey | 0xFF);
    return image;
}

Image readFrame(app::Size screen) {
    Image image{screen.width, screen.height, hostkit::readScreen(screen.width, screen.height)};
    for (std::size_t alpha = 3; alpha < image.rgba.size(); alpha += 4) {
        image.rgba[alpha] = 255;
    }
    return image;
}

Image fitting(const Image& image, int width, int height) {
    const double scale = std::min(static_cast<double>(width) / image.width,
                                  static_cast<double>(height) / image.height);
    const int shownWidth = std::clamp(static_cast<int>(std::lround(image.width * scale)), 1, width);
    const int shownHeight =
        std::clamp(static_cast<int>(std::lround(image.height * scale)), 1, height);
    Image fit = plainImage(width, height, 0);
    drawScaled(image, fit, (width - shownWidth) / 2, (height - shownHeight) / 2, shownWidth,
               shownHeight);
    return fit;
}

void drawScaled(const Image& image, Image& target, int x, int y, int width, int height) {
    gdk_pixbuf_scale(pixbufOf(image).get(), pixbufOf(target).get(), x, y, width, height, x, y,
                     static_cast<double>(width) / image.width,
                     static_cast<double>(height) / image.height, GDK_INTERP_BILINEAR);
}

namespace {

void save(const Image& image, const std::filesystem::path& file, const std::filesystem::path& named,
          const char* format, const char* option, const char* value) {
    gchar* bytes = nullptr;
    gsize count = 0;
    GError* error = nullptr;
    if (!gdk_pixbuf_save_to_buffer(pixbufOf(image).get(), &bytes, &count, format, &error, option,
                                   value, nullptr)) {
        throw Failure(messageOf(error), named.string());
    }
    const std::unique_ptr<gchar, decltype(&g_free)> owner(bytes, g_free);
    writeWhole(file, std::string_view(bytes, count), named);
}

}  // namespace

void savePng(const Image& image, const std::filesystem::path& file,
             const std::filesystem::path& named) {
    // Use compression level 1. Higher levels take ten times as long and make a photograph hardly smaller.
    save(image, file, named, "png", "compression", "1");
}

void saveJpeg(const Image& image, const std::filesystem::path& file) {
    save(image, file, file, "jpeg", "quality", "88");
}

}  // namespace desktop
