// Runs the player with command lines, as a user does. Checks the files that it writes, its messages and its exit codes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/desktop_files.h"

namespace {

/// Returns the colour of the test image at a position. The quarters are red, green, blue and white, in reading order.
Rgb quarter(double x, double y) {
    constexpr Rgb colors[2][2] = {{{200, 30, 30}, {30, 180, 30}}, {{30, 30, 200}, {230, 230, 230}}};
    return colors[y < 0.5 ? 0 : 1][x < 0.5 ? 0 : 1];
}

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

class Player : public FolderTest {
protected:
    Player() {
        save(paint(80, 120, quarter), "image.png");
        write("still.gesture", "screen 64 96\nframes 3\n0 clear\n");
        write("drag.gesture",
              "screen 64 96\nframes 8\n0 down 32 48 0.5\n1 move 36 48 0.5\n2 move 41 50 0.5\n3 up "
              "41 50 0\n");
    }

    /// Runs the player in the folder of the test images. `arguments` can override the default options.
    Outcome play(const std::string& arguments) const {
        std::string all = arguments;
        for (const std::string option : {"--second image.png", "--size 64x96"}) {
            if (arguments.find(option.substr(0, option.find(' '))) == std::string::npos) {
                all = option + " " + all;
            }
        }
        const int exitCode =
            run(before + " " VELMORA_PLAYER " --headless " + all + " >stdout.txt 2>stderr.txt");
        return {exitCode, contents("stdout.txt"), contents("stderr.txt")};
    }

    std::string before;
};

/// Returns the digest with this name from the player's output.
std::string digest(const std::string& out, const std::string& name) {
    const std::size_t line = ("\n" + out).find("\n" + name + " ");
    EXPECT_NE(line, std::string::npos) << name << " in " << out;
    return out.substr(std::min(line + name.size() + 1, out.size()), 16);
}

TEST_F(Player, ReportsAnErrorInOneLineAndLeavesNoFile) {
    write("text.png", "not an image");
    // This file contains only the header of a PNG image, which claims a size of 20000 x 20000 grey pixels.
    write("huge.png",
          std::string_view("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR\0\0\x4e\x20\0\0\x4e\x20\x08\0\0\0\0"
                           "\xc6\x1b\x19\xe5\0\0\0\x0aIDAT",
                           41));
    write("bad.gesture", "screen 64 96\n0 down here\n");
    const std::string endless(5000, 'x');
    write("endless.gesture", endless);
    const std::string good = "image.png --script still.gesture ";
    const std::string preset = good + "--preset bad.json";
    const struct {
        std::string arguments;
        std::vector<std::string> expected;
        std::string badPreset = {};
    } cases[] = {
        {"missing.png --script still.gesture", {"no such image", "missing.png"}},
        {"text.png --script still.gesture", {"not a readable image", "text.png"}},
        {". --script still.gesture", {"cannot read the image", ": ."}},
        {"huge.png --script still.gesture", {"too large", "20000 x 20000", "huge.png"}},
        {good + "--second missing.png", {"no such image", "missing.png"}},
        {"image.png --script bad.gesture", {"bad.gesture:2", "expected"}},
        {"image.png --script missing.gesture", {"missing.gesture"}},
        {good + "--out text.png/out", {"cannot write", "text.png/out"}},
        {good + "--size 64x0", {"--size", "'64x0'"}},
        {good + "--size 64x96x3", {"--size", "'64x96x3'"}},
        {good + "--size 100000x100000", {"--size", "16 to 4096"}},
        {good + "--overlay heat", {"--overlay", "velocity"}},
        {good + "--frames 0", {"--frames"}},
        {good + "--sise --foo", {"unknown argument '--sise', '--foo'", "did you mean --size?"}},
        {good + "more.png", {"unknown argument 'more.png'", "one IMAGE"}},
        {"'' --script still.gesture", {"IMAGE must not be empty"}},
        {good + "--seconds 1 --frames 1", {"exclude each other"}},
        {good + "--fps 0", {"--fps must be a whole number from 1 to 60, not '0'"}},
        {good + "--preset embr", {"no preset 'embr'; did you mean ember?", "calm_pond, ember"}},
        {"image.png --script tapp", {"did you mean tap?", "scribble"}},
        {"image.png --script unlike", {"no gesture script 'unlike'. Choose a file"}},
        {preset,
         {"'damping' must be a number from 0.8", "'rain' must be a number from 0 to 40"},
         R"({"damping": 2, "rain": -1})"},
        {good + "--preset missing.json", {"no such preset", "missing.json"}},
        {good + "--preset text.png", {"not JSON", "text.png"}},
        {preset, {"not JSON", "bad.json"}, "{\"damping\": 0.9,\n"},
        {preset, {"a JSON object", "bad.json"}, "[1]"},
        {preset, {"no setting 'damp  [7mness'", "damping, "}, R"({"damp\n\u001b[7mness": 1})"},
        {preset, {"no setting '" + std::string(40, 'x') + "...'"}, R"({")" + endless + R"(": 1})"},
        {"image.png --script endless.gesture", {"found \"" + std::string(40, 'x') + "\""}},
        {preset, {"'damping'", "a number from 0.8 to 0.999"}, R"({"damping": 1e300})"},
        {preset, {"'meshDetail'", "from 24 to 180"}, R"({"meshDetail": 99999999999999999999})"},
    };
    for (const auto& [arguments, expected, badPreset] : cases) {
        SCOPED_TRACE(arguments + badPreset);
        write("bad.json", badPreset);
        const Outcome outcome = play(arguments);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.find("velmora-player: "), 0u) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
        for (const std::string& part : expected) {
            EXPECT_NE(outcome.err.find(part), std::string::npos) << part << " in " << outcome.err;
        }
        EXPECT_FALSE(fs::exists(folder / "out"));
    }
}

TEST_F(Player, AFailingEncoderEndsTheRunAndLeavesNoFile) {
    fs::create_directory(folder / "bin");
    write("bin/ffmpeg",
          "#!/bin/sh\necho first >&2\necho the encoder fails in this test >&2\nexit 3\n");
    fs::permissions(folder / "bin/ffmpeg", fs::perms::owner_all);
    fs::create_directory(folder / "full");
    write("full/ffmpeg",
          "#!/bin/sh\necho 'av_interleaved_write_frame(): No space left on device' >&2\n"
          "echo Conversion failed >&2\nexit 1\n");
    fs::permissions(folder / "full/ffmpeg", fs::perms::owner_all);
    for (const auto& [path, expected] :
         {std::pair{"bin:$PATH", "the encoder fails in this test: out/film.mp4\n"},
          std::pair{"full:$PATH", "cannot write out/film.mp4: no space left on device\n"},
          std::pair{"/nowhere", "cannot start ffmpeg: "}}) {
        before = std::string("PATH=") + path;
        const Outcome outcome = play("image.png --script still.gesture");
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.err.find(expected), std::string::npos) << outcome.err;
        EXPECT_FALSE(fs::exists(folder / "out"));
        EXPECT_EQ(play("image.png --script still.gesture --out new/deep").exitCode, 2);
        EXPECT_FALSE(fs::exists(folder / "new"));
    }
}

TEST_F(Player, AStillWithoutSpaceEndsTheRunAndTheErrorNamesItsFinalPlace) {
    before = "ulimit -f 1;";
    const Outcome outcome = play("image.png --script drag.gesture --size 128x192");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find("cannot write out/frame-0"), std::string::npos) << outcome.err;
    EXPECT_FALSE(fs::exists(folder / "out"));
}

TEST_F(Player, ShowsEachImageFormatUprightAndComplete) {
    // A screen of 64 x 96 pixels shows only the middle 4/9 of this image's width. The rest of the image is black.
    save(paint(120, 80,
               [](double x, double y) {
                   const double shown = (x - 0.5) * 2.25 + 0.5;
                   return shown < 0.0 || shown > 1.0 ? Rgb{} : quarter(shown, y);
               }),
         "wide.webp", "webp");
    // In EXIF orientation 6, the first row of the file is the rightmost column of the upright image.
    save(paint(120, 80, [](double x, double y) { return quarter(1.0 - y, x); }), "turned.jpg",
         "jpeg");
    constexpr std::string_view turned(
        "\xFF\xE1\x00\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
        36);
    write("turned.jpg", contents("turned.jpg").insert(2, turned));
    for (const std::string image : {"image.png", "wide.webp", "turned.jpg"}) {
        SCOPED_TRACE(image);
        ASSERT_EQ(play(image + " --script still.gesture --frames 1").exitCode, 0);
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

TEST_F(Player, WritesCompleteFilesAndKeepsTheUsersFiles) {
    fs::create_directory(folder / "out");
    write("out/notes.txt", "mine");
    write("out/film.mp4", "of yesterday");
    const Outcome outcome = play("image.png --script drag.gesture --size 65x97");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find("frames/s"), std::string::npos)
        << "without a terminal, the run must print no progress";
    EXPECT_EQ(contents("out/notes.txt"), "mine");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "out"), {}), 8 + 3)
        << "the folder must contain 8 frames, the film, the contact sheet and the user's notes";
    const std::string film = contents("out/film.mp4");
    EXPECT_LT(film.find("moov"), film.find("mdat")) << "the film's index must precede its frames";
    EXPECT_EQ(probed("out/film.mp4"), "64,96,yuv420p,60/1,8\n");
    const Pixbuf sheet = load("out/sheet.png");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(gdk_pixbuf_get_width(sheet.get()), 6 * 65 + 5 * 6);
    EXPECT_EQ(gdk_pixbuf_get_height(sheet.get()), 2 * 97 + 6);
    for (int place = 0; place < 8; ++place) {  // thumbnails of a screen this small are not scaled
        const Pixbuf frame = load("out/frame-0" + std::to_string(place + 1) + ".png");
        ASSERT_TRUE(frame) << place;
        for (const auto& [x, y] : {std::pair{10, 10}, {50, 10}, {36, 46}, {50, 80}}) {
            EXPECT_EQ(pixel(sheet, place % 6 * (65 + 6) + x, place / 6 * (97 + 6) + y),
                      pixel(frame, x, y));
        }
    }

    play("image.png --script still.gesture");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "out"), {}), 3 + 3)
        << "a run must remove the frames of a longer earlier run";
}

TEST_F(Player, DigestsFollowTheScriptAndThePreset) {
    const auto digests = [&](const std::string& arguments) {
        const std::string out = play("image.png --digest --script " + arguments).out;
        return std::pair{digest(out, "water"), digest(out, "velocity")};
    };
    const auto drag = digests("drag.gesture");
    EXPECT_EQ(drag, digests("drag.gesture --out elsewhere"));
    EXPECT_NE(drag.second, digests("still.gesture --frames 8").second);
    const std::string noBytes = "cbf29ce484222325";
    EXPECT_EQ(digests("drag.gesture --water-only"), std::pair(drag.first, noBytes));
    for (const std::string name : {"calm_pond", "rain", "ink_bath", "oil"}) {
        const auto tuned = digests("drag.gesture --preset " VELMORA_PRESETS "/" + name + ".json");
        EXPECT_NE(drag.first, tuned.first) << name << " must change the water";
        EXPECT_EQ(drag.second, tuned.second) << name << " must not change the flow";
    }
}

TEST_F(Player, TheDefaultGestureUsesInkPressureAndTimeScaleOfThePreset) {
    const auto last = [&](const std::string& ink, const std::string& more) {
        write("preset.json", R"({"ripple": 0, "ink": )" + ink + more + "}");
        const Outcome outcome = play("image.png --frames 24 --preset preset.json");
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return load("out/frame-12.png");
    };
    /// Returns how warm the image is: the sum of red minus blue over all pixels.
    const auto warmth = [](const Pixbuf& image) {
        long sum = 0;
        for (int at = 0; at < 64 * 96; ++at) {
            const Rgb color = pixel(image, at % 64, at / 64);
            sum += color[0] - color[2];
        }
        return sum;
    };
    const long red = warmth(last("[0.9, 0.2, 0.1]", R"(, "timeScale": 0.5)"));
    EXPECT_EQ(probed("out/film.mp4"), "64,96,yuv420p,60/1,48\n")
        << "at half the speed, the film must have twice as many frames";
    const long blue = warmth(last("[0.1, 0.2, 0.9]", R"(, "timeScale": 2)"));
    EXPECT_EQ(probed("out/film.mp4"), "64,96,yuv420p,60/1,12\n")
        << "at twice the speed, the film must have half as many frames";
    const long faint = warmth(last("[0.1, 0.2, 0.9]", R"(, "pressure": 0.05)"));
    EXPECT_GT(red, blue + 1000);
    EXPECT_GT(faint, blue + 100) << "a lower pressure must leave less ink";
}

TEST_F(Player, ASignalEndsTheRunWithoutFilesAndWithoutAnEncoderError) {
    for (const std::string signal : {"INT", "TERM", "HUP"}) {
        SCOPED_TRACE(signal);
        // The signal goes to the whole process group, as for Ctrl-C in a terminal or when a terminal closes.
        run("rm -f err; (env --default-signal=INT setsid " VELMORA_PLAYER
            " image.png --headless --size 64x96 --script drag.gesture --frames 5000 2>err & "
            "until grep -q '^Filming' err; do sleep 0.05; done; kill -s " +
            signal + " -- -$!; wait $!; echo $? >code)");
        EXPECT_EQ(contents("code"), "2\n");
        EXPECT_NE(contents("err").find("interrupted: frame "), std::string::npos)
            << contents("err");
        EXPECT_EQ(contents("err").find("ffmpeg"), std::string::npos) << contents("err");
        EXPECT_FALSE(fs::exists(folder / "out"));
    }
}

TEST_F(Player, ReadsAPipeAndASignalEndsTheWaitForAPipe) {
    run("mkfifo pipe.png silent.png; cat image.png >pipe.png &");
    EXPECT_EQ(play("pipe.png --script still.gesture --frames 1").exitCode, 0);
    before = "timeout --kill-after=20 --preserve-status 1";
    const Outcome outcome = play("silent.png --script still.gesture");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find("interrupted while reading: silent.png"), std::string::npos)
        << outcome.err;
}

TEST_F(Player, WarnsAboutOddInputsAndContinues) {
    write("late.gesture", "\xEF\xBB\xBFscreen 64 96\nframes 3\n0 down 1 1 1\n3 up 1 1 0\n");
    write("empty.gesture", "# nothing\nframes 2\n");
    save(paint(80, 120, quarter), "photo.jpg", "jpeg");
    const std::string photo = contents("photo.jpg");
    write("cut.jpg", photo.substr(0, photo.size() * 2 / 3));
    write("cut.png", contents("image.png").substr(0, fs::file_size(folder / "image.png") - 40));
    for (const auto& [arguments, expected] :
         {std::pair{"image.png --script late.gesture", "1 event of the gesture script comes"},
          {"image.png --script empty.gesture", "has no event: empty.gesture"},
          {"image.png --script still.gesture --record a.gesture",
           "--record needs a window, so this file is not written: a.gesture"},
          {"cut.jpg --script still.gesture", "the end of the image file is missing: cut.jpg"},
          {"cut.png --script still.gesture", "the end of the image file is missing: cut.png"}}) {
        const Outcome outcome = play(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << arguments;
        EXPECT_NE(outcome.err.find(expected), std::string::npos) << outcome.err;
    }
    EXPECT_EQ(play("photo.jpg --script drag.gesture").err.find("is missing"), std::string::npos);
}

TEST_F(Player, FilmsPresetsAndGesturesByNameWithADurationAndARate) {
    run("mkdir glass tap sand");  // folders with the names of a preset, a gesture and a painting
    const Outcome outcome = play(
        "sand --preset glass --script tap --seconds 0.5 --fps 20 --size 65X96 --out out "
        "--out out");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(probed("out/film.mp4"), "64,96,yuv420p,20/1,10\n");
    EXPECT_NE(outcome.err.find("even sides"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find("--out is given more than once"), std::string::npos);
}

TEST_F(Player, FilmsInEachFormat) {
    for (const std::string format : {"webm", "gif"}) {
        EXPECT_EQ(play("image.png --script drag.gesture --format " + format).exitCode, 0);
        EXPECT_TRUE(probed("out/film." + format).starts_with("64,96,")) << format;
    }
}

/// Tests the script `play` in a folder in which small scripts replace the programs that `play` calls.
class PlayScript : public FolderTest {
protected:
    PlayScript() {
        run("mkdir -p tree/tools tree/player tree/build/play bin && cd tree && cp " VELMORA_SOURCES
            "/play . && cp " VELMORA_SOURCES "/player/help.txt player && cp " VELMORA_SOURCES
            "/CMakeLists.txt . && mkdir app desktop hostkit include paintings platform src && "
            "touch build/play/build.ninja");
        write("tree/tools/setup", "echo set up $1\n");
        write("tree/build/play/velmora-player", "echo played $1\n");
        write("bin/cmake", "echo '[0/2] Re-checking globbed directories...'\necho \"$OUTPUT\"\n");
        write("bin/pkg-config", "exit $MISSING\n");
        run("chmod +x tree/tools/setup tree/build/play/velmora-player bin/*");
    }

    /// Runs a command and returns the text that it prints.
    std::string said(const std::string& command) const {
        run("PATH=$PWD/bin:$PATH " + command + " >said 2>&1");
        return contents("said");
    }
};

TEST_F(PlayScript, InstallsMissingPackagesOnlyAndPrintsHelpBeforeABuild) {
    EXPECT_EQ(said("MISSING=0 tree/play a.jpg"), "played a.jpg\n");
    EXPECT_EQ(said("MISSING=1 tree/play a.jpg"), "set up play\nplayed a.jpg\n");
    const std::string help = said("MISSING=1 tree/play --help");
    EXPECT_EQ(help, said(VELMORA_PLAYER " --help"));
    EXPECT_NE(help.find("./play photo.jpg"), std::string::npos);
    EXPECT_EQ(said("MISSING=1 tree/play --version"), said(VELMORA_PLAYER " --version"));
}

TEST_F(PlayScript, AnnouncesABuildOnlyIfItCompilesSomething) {
    EXPECT_EQ(said("OUTPUT='ninja: no work to do.' MISSING=0 tree/play"), "played\n");
    EXPECT_TRUE(said("OUTPUT='[1/2] Building CXX object a.o' MISSING=0 tree/play")
                    .starts_with("Building the player. "));
    EXPECT_NE(contents("tree/build/logs/play.log").find("Building CXX object"), std::string::npos);
}

TEST_F(PlayScript, StartsAPlayerThatTheUserMayNotBuild) {
    run("chmod 755 . && touch tree/build/play/built && chmod 555 tree/build/play");
    const std::string asUser =
        geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    const std::string play = asUser + "env MISSING=1 tree/play a.jpg";
    EXPECT_EQ(said(play), "played a.jpg\n");
    write("tree/app/new.cpp", "");
    run("touch -d tomorrow tree/app/new.cpp");
    const std::string old = said(play);
    EXPECT_TRUE(old.starts_with("play: the sources have changed")) << old;
    EXPECT_TRUE(old.ends_with("played a.jpg\n")) << old;
    run("chmod 755 tree/build/play && rm tree/build/play/velmora-player && chmod 555 "
        "tree/build/play");
    EXPECT_NE(said(play).find("Run ./play once as root."), std::string::npos);
    run("chmod 755 tree/build/play");
}

TEST_F(Player, OverlaysChangeTheFrameButNotTheFlow) {
    write("lost.gesture",
          "screen 64 96\nframes 8\n1 lose-context\n2 down 32 48 0.5\n3 move 36 48 0.5\n"
          "4 move 41 50 0.5\n5 move 41 56 0.5\n");
    const auto run = [&](const std::string& arguments) {
        const std::string out =
            play("image.png --digest --script lost.gesture --out shown " + arguments).out;
        return std::pair{digest(out, "velocity"), load("shown/frame-08.png")};
    };
    const auto [flow, plain] = run("");
    for (const std::string overlay : {"velocity", "ink"}) {
        SCOPED_TRACE(overlay);
        const auto [sameFlow, image] = run("--overlay " + overlay);
        EXPECT_EQ(sameFlow, flow);
        int changed = 0;
        for (int at = 0; at < 64 * 96; ++at) {
            changed += pixel(image, at % 64, at / 64) == pixel(plain, at % 64, at / 64) ? 0 : 1;
        }
        // The frame has 64 x 96 = 6144 pixels. The false colours of the ink must change more than 6000 pixels. The flow
        // lines must change more than 20 but fewer than 3000 pixels.
        EXPECT_GT(changed, overlay == "ink" ? 6000 : 20);
        EXPECT_LT(changed, overlay == "ink" ? 6145 : 3000);
    }
}

TEST_F(Player, DrawsAProgressBarWithTheRemainingTimeOnATerminal) {
    before = "script -qec \"";
    play("image.png --script still.gesture --size 96x160 --frames 90\" typescript >bar.txt ; true");
    const std::string shown = contents("typescript");
    EXPECT_NE(shown.find("\r[########################] 90/90"), std::string::npos) << shown;
    EXPECT_NE(shown.find(" frames/s  0:0"), std::string::npos) << shown;
    EXPECT_NE(shown.find(" left\x1b[K"), std::string::npos) << shown;
}

}  // namespace
