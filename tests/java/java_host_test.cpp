// Tests the Java host on a JVM as a user runs it. It must draw the same frames as the C++ host and report errors
// clearly.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>
#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"
#include "tests/java/run_java.h"

namespace {

namespace fs = std::filesystem;

Ended runHost(const std::string& arguments) {
    return runJava("-jar " HOST_JAR " --size 270x480 " + arguments);
}

fs::path emptyFolder(const std::string& name) {
    fs::path folder = fs::current_path() / ("java-host-" + name);
    fs::remove_all(folder);
    return folder;
}

/// Returns the RGBA bytes of an image file. Returns an empty array if the file cannot be read.
std::vector<std::uint8_t> pixelsOf(const fs::path& png) {
    GdkPixbuf* const picture = gdk_pixbuf_new_from_file(png.c_str(), nullptr);
    if (picture == nullptr) {
        return {};
    }
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < gdk_pixbuf_get_height(picture); ++y) {
        const guchar* const row =
            gdk_pixbuf_read_pixels(picture) + y * gdk_pixbuf_get_rowstride(picture);
        pixels.insert(pixels.end(), row, row + gdk_pixbuf_get_width(picture) * 4);
    }
    g_object_unref(picture);
    return pixels;
}

// This is the only test that runs the library in the test program itself. The library keeps its state after a test, so
// a second such test could fail.
TEST(SamePictures, AreDrawnByTheHostOnAJvm) {
    const fs::path out = emptyFolder("everything");
    const Ended java =
        runHost("--every 10 --script " EVERYTHING_GESTURE " --frames 60 --out " + out.string());
    const auto script = scaledToScreen(hostkit::loadGestureScript(EVERYTHING_GESTURE), 270, 480);
    hostkit::EffectHost host({.width = 270, .height = 480});
    std::vector<std::uint8_t> earlier;
    for (int frame = 0; frame < 60; ++frame) {
        host.frame(eventsOfFrame(script, frame));
        if (frame % 10 == 9) {
            const auto pixels = host.pixels();
            const fs::path picture = out / ("frame-00" + std::to_string(frame + 1) + ".png");
            EXPECT_TRUE(pixelsOf(picture) == pixels) << picture;
            EXPECT_TRUE(pixels != earlier) << picture << " must differ from the previous picture";
            earlier = pixels;
        }
    }
    EXPECT_EQ(java.output, "60 frames played, " + std::string(host.inkShown() ? "" : "no ") +
                               "ink shown: " + out.string() + "\n");
    EXPECT_EQ(java.exitCode, 0);
    if (!HasFailure()) {
        fs::remove_all(out);
    }
}

/// BitmapCases prints one line for each bitmap, with the result of LoadTextures.
TEST(JavaBitmap, IsAcceptedOrRejectedAsOnADevice) {
    const Ended java = runJava("-cp " HOST_JAR ":" TEST_JAR " javahost.BitmapCases");
    EXPECT_EQ(java.output,
              "two by three: 0\n"
              "no such slot: -1\n"
              "null: -1\n"
              "RGB_565: -1\n"
              "recycled: -2\n");
    EXPECT_EQ(java.exitCode, 0);
}

/// Returns a JPEG image. `colorAt` returns the colour (0xRRGGBB) at a position, whose coordinates are from 0 to 1.
template <class ColorAt>
std::string jpeg(int width, int height, ColorAt colorAt) {
    GdkPixbuf* const picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
    for (int at = 0; at < width * height; ++at) {
        const int x = at % width;
        const int y = at / width;
        const int color = colorAt((x + 0.5) / width, (y + 0.5) / height);
        guchar* const pixel =
            gdk_pixbuf_get_pixels(picture) + y * gdk_pixbuf_get_rowstride(picture) + 3 * x;
        for (int part = 0; part < 3; ++part) {
            pixel[part] = static_cast<guchar>(color >> (16 - 8 * part));
        }
    }
    gchar* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(picture, &bytes, &size, "jpeg", nullptr, nullptr);
    g_object_unref(picture);
    std::string result(bytes, size);
    g_free(bytes);
    return result;
}

/// Returns a JPEG as a camera in this orientation would store it. Turned upright, the photograph is three times as wide
/// as the screen. The middle third has a red, a green, a blue and a white quarter, in reading order; the rest is black.
std::string photograph(int orientation) {
    const bool isTurned = orientation > 4;
    const bool isRightLeft = orientation % 4 / 2 == 1;
    const bool isUpsideDown = (orientation - 1) % 4 / 2 == 1;
    const auto seenColor = [](double x, double y) {
        const int upper = x < 0.5 ? 0xFF0000 : 0x00FF00;
        const int lower = x < 0.5 ? 0x0000FF : 0xFFFFFF;
        return x < 1.0 / 3 || x > 2.0 / 3 ? 0 : y < 0.5 ? upper : lower;
    };
    return jpeg(isTurned ? 96 : 192, isTurned ? 192 : 96, [&](double storedX, double storedY) {
        const double x = isTurned ? storedY : storedX;
        const double y = isTurned ? storedX : storedY;
        return seenColor(isRightLeft ? 1 - x : x, isUpsideDown ? 1 - y : y);
    });
}

/// Returns an EXIF segment that contains only an orientation. The byte order of its numbers is little-endian or
/// big-endian.
std::string exifSegment(char orientation, bool isLittleEndian) {
    std::string segment(
        "\xFF\xE1\0\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0?\0\0\0\0\0\0",
        36);
    segment[29] = orientation;
    if (isLittleEndian) {
        segment.replace(10, 20,
                        std::string("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0?\0", 20));
        segment[28] = orientation;
    }
    return segment;
}

TEST(JavaHost, TurnsAnImageUprightAndCropsItToTheScreen) {
    const fs::path folder = emptyFolder("photographs");
    fs::create_directories(folder);
    std::string files;
    std::string expected;
    for (char orientation = 1; orientation <= 8; ++orientation) {
        const fs::path file = folder / (std::to_string(orientation) + ".jpg");
        std::ofstream(file, std::ios::binary)
            << photograph(orientation).insert(2, exifSegment(orientation, orientation % 2 == 0));
        files.append(" ").append(file.string());
        expected += "rgbw 64x96\n";
    }
    const Ended java = runJava("-cp " HOST_JAR ":" TEST_JAR " javahost.PhotographCases" + files);
    EXPECT_EQ(java.output, expected);
    EXPECT_EQ(java.exitCode, 0);
    fs::remove_all(folder);
}

TEST(JavaHost, ReportsInvalidInputInOneLine) {
    const fs::path script = emptyFolder("bad") += ".gesture";
    const std::string out = " --out " + emptyFolder("bad-out").string();
    const auto inScript = [&](const char* text) {
        std::ofstream(script) << text;
        return runHost("--script " + script.string() + out);
    };
    const auto hostkitsLine = [&] {
        try {
            hostkit::loadGestureScript(script);
            return std::string("no error");
        } catch (const hostkit::HostError& error) {
            return error.what() + std::string("\n");
        }
    };
    constexpr const char* faultyScripts[] = {
        "5 down 1 2",         // the pressure is missing
        "5 down 0x10 2 1",    // x is not decimal
        "\n3 ink 0 0 1.5",    // the blue channel is above 1
        "7 jump # 1",         // the action is unknown
        "4 clear\n3 clear",   // the frame number decreases
        "4 clear\nframes 9",  // a header follows an event
        "4 second on off",    // a word follows the end of the event
    };
    for (const char* text : faultyScripts) {
        const Ended java = inScript(text);
        EXPECT_EQ(java.output, hostkitsLine()) << text;
        EXPECT_EQ(java.exitCode, 2) << text;
    }
    fs::remove(script);
    EXPECT_EQ(runHost("--frames 3").exitCode, 2);
    const std::string image = emptyFolder("image").string();
    const auto withImage = [&](const std::string& bytes) {
        std::ofstream(image, std::ios::binary) << bytes;
        return runHost("--script " EVERYTHING_GESTURE " --background " + image + out).output;
    };
    EXPECT_EQ(withImage("no image"),
              image + ": cannot be read as an image; use a PNG, JPEG, BMP or GIF file\n");
    EXPECT_EQ(
        withImage(
            {"\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\x75\x30\0\0\x75\x30\x08\x02\0\0\0CRC.", 33}),
        image + ": expected at most 100 million pixels, found 30000 x 30000\n");
    fs::remove(image);
    EXPECT_EQ(runHost("--script " + script.string() + out).output, hostkitsLine());
}

}  // namespace
