#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

namespace fs = std::filesystem;

using Rgb = std::array<int, 3>;
struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;

inline guchar* pixelPlace(const Pixbuf& pixbuf, int x, int y) {
    return gdk_pixbuf_get_pixels(pixbuf.get()) + y * gdk_pixbuf_get_rowstride(pixbuf.get()) +
           x * gdk_pixbuf_get_n_channels(pixbuf.get());
}

inline Rgb pixel(const Pixbuf& pixbuf, int x, int y) {
    const guchar* channels = pixelPlace(pixbuf, x, y);
    return {channels[0], channels[1], channels[2]};
}

/// Returns an image that has, at the centre of each pixel, the colour that `colorAt` returns for coordinates from 0 to
/// 1.
template <class ColorAt>
Pixbuf paint(int width, int height, ColorAt colorAt) {
    Pixbuf pixbuf(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Rgb color = colorAt((x + 0.5) / width, (y + 0.5) / height);
            std::copy(color.begin(), color.end(), pixelPlace(pixbuf, x, y));
        }
    }
    return pixbuf;
}

/// Test fixture with a temporary folder in which the programs run.
class FolderTest : public testing::Test {
protected:
    FolderTest() {
        std::string name = (fs::temp_directory_path() / "player_test.XXXXXX").string();
        folder = mkdtemp(name.data());
    }
    ~FolderTest() override { fs::remove_all(folder); }

    std::string contents(const fs::path& file) const {
        std::ifstream stream(folder / file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void write(const fs::path& file, std::string_view text) const {
        std::ofstream(folder / file, std::ios::binary) << text;
    }
    Pixbuf load(const fs::path& file) const {
        return Pixbuf(gdk_pixbuf_new_from_file((folder / file).c_str(), nullptr));
    }
    void save(const Pixbuf& pixbuf, const fs::path& file, const char* type = "png") const {
        ASSERT_TRUE(gdk_pixbuf_save(pixbuf.get(), (folder / file).c_str(), type, nullptr, nullptr));
    }
    /// Runs a command in the folder and returns its exit code.
    int run(const std::string& command) const {
        const int status = std::system(("cd " + folder.string() + " && " + command).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    /// Returns width, height, pixel format, frame rate and number of frames of a film. Returns an empty text if the
    /// film cannot be played.
    std::string probed(const std::string& film) const {
        run("ffprobe -v error -count_packets -show_entries "
            "stream=width,height,pix_fmt,r_frame_rate,nb_read_packets -of csv=p=0 " +
            film + " >probed 2>/dev/null");
        return contents("probed");
    }

    fs::path folder;
};
