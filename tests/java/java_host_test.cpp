// The host on a JVM as a user runs it: the pictures of the host without one, and clear refusals.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"

namespace {

namespace fs = std::filesystem;

struct Ended {
    int exitCode;
    /// Both output streams, the JVM's warnings among them.
    std::string output;
};

Ended run(const std::string& command) {
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    Ended ended{};
    for (int letter; (letter = std::fgetc(pipe)) != EOF;) {
        ended.output += static_cast<char>(letter);
    }
    ended.exitCode = WEXITSTATUS(pclose(pipe));
    return ended;
}

/// Runs a Java program of the build with the JVM's checks of each JNI call.
Ended runJava(const std::string& arguments) {
    return run("LD_LIBRARY_PATH=" LIBRARIES " " JAVA " -Xcheck:jni " + arguments);
}

Ended runHost(const std::string& arguments) {
    return runJava("-jar " HOST_JAR " --size 270x480 " + arguments);
}

fs::path emptyFolder(const std::string& name) {
    const fs::path folder = fs::current_path() / ("java-host-" + name);
    fs::remove_all(folder);
    return folder;
}

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The picture's RGBA bytes; of a picture that cannot be read, none.
std::string pixelsOf(const fs::path& png) {
    GdkPixbuf* const picture = gdk_pixbuf_new_from_file(png.c_str(), nullptr);
    if (picture == nullptr) {
        return {};
    }
    std::string pixels;
    for (int y = 0; y < gdk_pixbuf_get_height(picture); ++y) {
        const guchar* const row =
            gdk_pixbuf_read_pixels(picture) + y * gdk_pixbuf_get_rowstride(picture);
        pixels.append(row, row + gdk_pixbuf_get_width(picture) * 4);
    }
    g_object_unref(picture);
    return pixels;
}

class SamePictures : public testing::TestWithParam<const char*> {};

TEST_P(SamePictures, AsTheHostWithoutJvm) {
    const std::string script = GetParam();
    const fs::path out = emptyFolder(fs::path(script).stem());
    const Ended direct = run(HOST_WITHOUT_JVM " " + script + " 60 " + out.string());
    const Ended java =
        runHost("--every 10 --script " + script + " --frames 60 --out " + out.string());
    EXPECT_EQ(java.output, direct.output);
    EXPECT_EQ(java.exitCode, 0);
    std::string earlier;
    for (const char* frame : {"0010", "0020", "0030", "0040", "0050", "0060"}) {
        const fs::path picture = out / ("frame-" + std::string(frame));
        const std::string expected = contents(picture.string() + ".rgba");
        ASSERT_EQ(expected.size(), 270u * 480u * 4u);
        EXPECT_TRUE(pixelsOf(picture.string() + ".png") == expected) << picture;
        EXPECT_TRUE(expected != earlier) << picture << " shows nothing new";
        earlier = expected;
    }
    if (!HasFailure()) {
        fs::remove_all(out);
    }
}

INSTANTIATE_TEST_SUITE_P(Gestures, SamePictures,
                         testing::Values(GESTURES "/scribble.gesture", EVERYTHING_GESTURE),
                         [](const auto& test) { return fs::path(test.param).stem().string(); });

/// Prints a line for each bitmap that the library takes or refuses.
TEST(JavaBitmap, IsTakenOrRefusedAsOnADevice) {
    const Ended java = runJava("-cp " HOST_JAR ":" TEST_JAR " javahost.BitmapCases");
    EXPECT_EQ(java.output,
              "two by three: 0\n"
              "no such slot: -1\n"
              "null: -1\n"
              "RGB_565: -1\n"
              "recycled: -2\n");
    EXPECT_EQ(java.exitCode, 0);
}

TEST(JavaHost, NamesABadInputInOneLine) {
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
    for (const char* text : {"5 down 1 2", "5 down 0x10 2 1", "\n3 ink 0 0 1.5", "7 jump # 1",
                             "4 clear\n3 clear", "4 clear\nframes 9", "4 second on off"}) {
        const Ended java = inScript(text);
        EXPECT_EQ(java.output, hostkitsLine()) << text;
        EXPECT_EQ(java.exitCode, 2) << text;
    }
    fs::remove(script);
    EXPECT_EQ(runHost("--frames 3").exitCode, 2);
    EXPECT_EQ(runHost("--script " + script.string() + out).output, hostkitsLine());
}

}  // namespace
