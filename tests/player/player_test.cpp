// Runs the player as a user does: command lines in; files, lines and exit codes out.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Rgb = std::array<int, 3>;

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const fs::path& file, std::string_view text) {
    std::ofstream(file, std::ios::binary) << text;
}

/// The picture that all tests show: red, green, blue and white quarters, in reading order.
Rgb quarter(double x, double y) {
    constexpr Rgb colors[2][2] = {{{200, 30, 30}, {30, 180, 30}}, {{30, 30, 200}, {230, 230, 230}}};
    return colors[y < 0.5 ? 0 : 1][x < 0.5 ? 0 : 1];
}

Pixbuf paint(int width, int height, const std::function<Rgb(double, double)>& colorAt) {
    Pixbuf pixbuf(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
    for (int y = 0; y < height; ++y) {
        guchar* pixel =
            gdk_pixbuf_get_pixels(pixbuf.get()) + y * gdk_pixbuf_get_rowstride(pixbuf.get());
        for (int x = 0; x < width; ++x) {
            for (const int part : colorAt((x + 0.5) / width, (y + 0.5) / height)) {
                *pixel++ = static_cast<guchar>(part);
            }
        }
    }
    return pixbuf;
}

Rgb pixel(const Pixbuf& pixbuf, int x, int y) {
    const guchar* channels = gdk_pixbuf_get_pixels(pixbuf.get()) +
                             y * gdk_pixbuf_get_rowstride(pixbuf.get()) +
                             x * gdk_pixbuf_get_n_channels(pixbuf.get());
    return {channels[0], channels[1], channels[2]};
}

void save(const Pixbuf& pixbuf, const fs::path& file, const char* type) {
    ASSERT_TRUE(gdk_pixbuf_save(pixbuf.get(), file.c_str(), type, nullptr, nullptr)) << type;
}

/// A JPEG whose camera was held upright and stored its rows from the picture's right side to the
/// left.
void saveTurnedJpeg(const fs::path& file) {
    save(paint(120, 80, [](double x, double y) { return quarter(1.0 - y, x); }), file, "jpeg");
    constexpr std::string_view turned(
        "\xFF\xE1\x00\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
        36);
    write(file, contents(file).insert(2, turned));
}

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

class Player : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "player_test.XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        save(paint(80, 120, quarter), folder / "picture.png", "png");
        write(folder / "still.gesture", "screen 64 96\nframes 3\n");
        write(folder / "drag.gesture",
              "screen 64 96\nframes 8\n0 down 32 48 0.5\n1 move 36 48 0.5\n2 move 41 50 0.5\n3 up "
              "41 50 0\n");
    }
    void TearDown() override { fs::remove_all(folder); }

    /// Runs the player in the test's folder with its pictures; later options win.
    Outcome play(const std::string& arguments) {
        const std::string command = "cd " + folder.string() + " && " + before +
                                    " " VELMORA_PLAYER
                                    " --headless --second picture.png --size 64x96 " +
                                    arguments + " >stdout.txt 2>stderr.txt";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contents(folder / "stdout.txt"),
                contents(folder / "stderr.txt")};
    }

    Pixbuf load(const fs::path& file) {
        return Pixbuf(gdk_pixbuf_new_from_file((folder / file).c_str(), nullptr));
    }

    fs::path folder;
    std::string before;
};

/// The digest of that name in what the player printed.
std::string digest(const std::string& out, const std::string& name) {
    const std::size_t line = ("\n" + out).find("\n" + name + " ");
    EXPECT_NE(line, std::string::npos) << name << " in " << out;
    const std::string value = out.substr(std::min(line + name.size() + 1, out.size()), 17);
    EXPECT_EQ(value.find_first_not_of("0123456789abcdef"), 16u) << value;
    return value.substr(0, 16);
}

TEST_F(Player, SaysInOneLineWhatIsWrongAndLeavesNothing) {
    write(folder / "text.png", "no picture at all");
    // The head of a PNG file of 20000 x 20000 grey pixels.
    write(folder / "huge.png",
          std::string_view("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x4e\x20\0\0\x4e\x20\x08\0\0\0\0"
                           "\xc6\x1b\x19\xe5\0\0\0\x0aIDAT",
                           41));
    write(folder / "bad.gesture", "screen 64 96\n0 down here\n");
    write(folder / "list.json", "[1]");
    write(folder / "name.json", R"({"dampness": 1})");
    write(folder / "range.json", R"({"damping": 1.5})");
    write(folder / "kind.json", R"({"waterOnly": 1})");
    write(folder / "whole.json", R"({"meshDetail": 90.5})");
    write(folder / "ink.json", R"({"ink": [0.1, 0.2, 1.2]})");
    const std::string good = "picture.png --script still.gesture ";
    const struct {
        std::string arguments;
        std::vector<std::string> told;
    } cases[] = {
        {"missing.png --script still.gesture", {"no such picture", "missing.png"}},
        {"text.png --script still.gesture", {"not a readable picture", "text.png"}},
        {". --script still.gesture", {"not a readable picture", ": ."}},
        {"huge.png --script still.gesture", {"too large", "20000 x 20000", "huge.png"}},
        {good + "--second missing.png", {"no such picture", "missing.png"}},
        {"picture.png --script bad.gesture", {"bad.gesture:2", "expected"}},
        {"picture.png --script missing.gesture", {"missing.gesture"}},
        {good + "--out text.png/out", {"cannot write", "text.png/out"}},
        {good + "--size 64", {"--size", "'64'"}},
        {good + "--size 64x0", {"--size", "'64x0'"}},
        {good + "--size 64x96x3", {"--size", "'64x96x3'"}},
        {good + "--size 99999999999x96", {"--size"}},
        {good + "--frames 0", {"--frames"}},
        {good + "--speed 3", {"--speed"}},
        {good + "--preset missing.json", {"cannot read the preset", "missing.json"}},
        {good + "--preset text.png", {"not JSON", "text.png"}},
        {good + "--preset list.json", {"a JSON object", "list.json"}},
        {good + "--preset name.json", {"no setting 'dampness'", "name.json"}},
        {good + "--preset range.json", {"'damping'", "a number from 0.8 to 0.999", "range.json"}},
        {good + "--preset kind.json", {"'waterOnly'", "true or false", "kind.json"}},
        {good + "--preset whole.json", {"'meshDetail'", "a whole number", "whole.json"}},
        {good + "--preset ink.json", {"'ink'", "three numbers from 0 to 1", "ink.json"}},
    };
    for (const auto& [arguments, told] : cases) {
        SCOPED_TRACE(arguments);
        const Outcome outcome = play(arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.find("velmora-player: "), 0u) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        for (const std::string& part : told) {
            EXPECT_NE(outcome.err.find(part), std::string::npos) << part << " in " << outcome.err;
        }
        EXPECT_FALSE(fs::exists(folder / "out"));
    }
}

TEST_F(Player, AFailingEncoderEndsTheRunCleanly) {
    fs::create_directory(folder / "bin");
    write(folder / "bin/ffmpeg",
          "#!/bin/sh\necho first >&2\necho the disk is made of cheese >&2\nexit 3\n");
    fs::permissions(folder / "bin/ffmpeg", fs::perms::owner_all);
    for (const auto& [path, told] :
         {std::pair{"bin:$PATH", "the disk is made of cheese: film.mp4\n"},
          std::pair{"/nowhere", "cannot start ffmpeg: "}}) {
        before = std::string("PATH=") + path;
        const Outcome outcome = play("picture.png --script still.gesture");
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.err.find(told), std::string::npos) << outcome.err;
        EXPECT_FALSE(fs::exists(folder / "out"));
    }
}

TEST_F(Player, ShowsEachKindOfPictureUprightAndWhole) {
    // A screen of 64 x 96 shows the middle 4/9 of this one; the rest is black.
    save(paint(120, 80,
               [](double x, double y) {
                   const double shown = (x - 0.5) * 2.25 + 0.5;
                   return shown < 0.0 || shown > 1.0 ? Rgb{} : quarter(shown, y);
               }),
         folder / "wide.webp", "webp");
    saveTurnedJpeg(folder / "turned.jpg");
    for (const std::string picture : {"picture.png", "wide.webp", "turned.jpg"}) {
        SCOPED_TRACE(picture);
        ASSERT_EQ(play(picture + " --script still.gesture --frames 1").exitCode, 0);
        const Pixbuf frame = load("out/frame-01.png");
        ASSERT_TRUE(frame);
        ASSERT_EQ(gdk_pixbuf_get_width(frame.get()), 64);
        ASSERT_EQ(gdk_pixbuf_get_height(frame.get()), 96);
        for (const auto& [x, y] : {std::pair{0.2, 0.2}, {0.8, 0.2}, {0.2, 0.8}, {0.8, 0.8}}) {
            const Rgb shown = pixel(frame, static_cast<int>(64 * x), static_cast<int>(96 * y));
            for (std::size_t part = 0; part < 3; ++part) {
                EXPECT_NEAR(shown[part], quarter(x, y)[part], 20) << x << " " << y << " " << part;
            }
        }
    }
}

TEST_F(Player, LeavesWholeFilesBesideThoseOfTheUser) {
    fs::create_directory(folder / "out");
    write(folder / "out/notes.txt", "mine");
    write(folder / "out/film.mp4", "of yesterday");
    const Outcome outcome = play("picture.png --script drag.gesture --size 65x97");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find('\r'), std::string::npos) << "a bar outside a terminal";
    EXPECT_EQ(contents(folder / "out/notes.txt"), "mine");
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder / "out")) {
        names.push_back(entry.path().filename());
    }
    EXPECT_EQ(names.size(), 8u + 3u) << "8 frames, film, sheet, notes";
    const Pixbuf sheet = load("out/sheet.png");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(gdk_pixbuf_get_width(sheet.get()), 6 * 65 + 5 * 6);
    EXPECT_EQ(gdk_pixbuf_get_height(sheet.get()), 2 * 97 + 6);
    for (int place = 0; place < 8; ++place) {  // so small a screen is shown in its own size
        const Pixbuf frame = load("out/frame-0" + std::to_string(place + 1) + ".png");
        ASSERT_TRUE(frame) << place;
        EXPECT_EQ(gdk_pixbuf_get_width(frame.get()), 65);
        EXPECT_EQ(gdk_pixbuf_get_height(frame.get()), 97);
        for (const auto& [x, y] : {std::pair{10, 10}, {50, 10}, {36, 46}, {50, 80}}) {
            EXPECT_EQ(pixel(sheet, place % 6 * (65 + 6) + x, place / 6 * (97 + 6) + y),
                      pixel(frame, x, y));
        }
    }

    const std::string film = contents(folder / "out/film.mp4");
    EXPECT_LT(film.find("moov"), film.find("mdat")) << "does not play before it is loaded";
    const std::string probe =
        "ffprobe -v error -count_packets -show_entries "
        "stream=width,height,pix_fmt,r_frame_rate,nb_read_packets -of csv=p=0 " +
        (folder / "out/film.mp4 >").string() + (folder / "probe").string();
    ASSERT_EQ(std::system(probe.c_str()), 0);
    EXPECT_EQ(contents(folder / "probe"), "64,96,yuv420p,60/1,8\n");
}

TEST_F(Player, DigestsFollowTheScriptAlone) {
    const auto run = [&](const std::string& arguments) {
        return play("picture.png --digest --script " + arguments).out;
    };
    const std::string once = run("drag.gesture");
    const std::string again = run("drag.gesture --out elsewhere");
    const std::string still = run("still.gesture --frames 8");
    const std::string dry = run("drag.gesture --water-only");
    EXPECT_EQ(digest(once, "water"), digest(again, "water"));
    EXPECT_EQ(digest(once, "velocity"), digest(again, "velocity"));
    EXPECT_NE(digest(once, "water"), digest(still, "water"));
    EXPECT_NE(digest(once, "velocity"), digest(still, "velocity"));
    EXPECT_EQ(digest(once, "water"), digest(dry, "water")) << "ink changes no water";
    EXPECT_EQ(digest(dry, "velocity"), "cbf29ce484222325") << "the digest of no bytes";
}

TEST_F(Player, PresetsShapeTheWaterAndNotTheFlow) {
    const auto run = [&](const std::string& preset) {
        return play("picture.png --digest --script drag.gesture" + preset).out;
    };
    const std::string plain = run("");
    for (const char* name : {"calm_pond", "rain", "ink_bath", "oil"}) {
        SCOPED_TRACE(name);
        const std::string tuned =
            run(std::string(" --preset " VELMORA_PRESETS "/") + name + ".json");
        EXPECT_NE(digest(plain, "water"), digest(tuned, "water"));
        EXPECT_EQ(digest(plain, "velocity"), digest(tuned, "velocity"));
    }
}

TEST_F(Player, DrawsABarOnATerminal) {
    before = "script -qec \"";
    play("picture.png --script still.gesture\" typescript >bar.txt ; true");
    const std::string screen = contents(folder / "typescript");
    EXPECT_NE(screen.find("\r[########################################] 3/3"), std::string::npos)
        << screen;
}

}  // namespace
