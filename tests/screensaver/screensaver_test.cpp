// Runs the screen saver as users do: in a window of another program, and started by XScreenSaver. Checks pixels of the
// display, messages and exit codes.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "foreign_window.h"
#include "tests/desktop_files.h"
#include "tests/virtual_display.h"

namespace {

constexpr int width = 480;
constexpr int height = 360;
constexpr Rgb red = {200, 40, 30};
constexpr Rgb blue = {30, 60, 200};
constexpr Rgb black = {0, 0, 0};
/// Colour of the plain grey picture that replaces a missing picture.
constexpr Rgb plain = {96, 96, 96};

bool isNear(const Rgb& one, const Rgb& other) {
    return std::ranges::equal(one, other,
                              [](int left, int right) { return std::abs(left - right) <= 2; });
}

class ScreensaverTest : public FolderTest {
protected:
    static void SetUpTestSuite() {
        display = std::make_unique<VirtualDisplay>(std::to_string(width) + "x" +
                                                   std::to_string(height) + "x24");
    }
    static void TearDownTestSuite() { display.reset(); }

    ScreensaverTest() {
        save(paint(64, 48, [](double, double) { return red; }), "red.png");
        save(paint(64, 48, [](double, double) { return blue; }), "blue.png");
    }
    ~ScreensaverTest() override {
        if (saver != 0) {
            kill(saver, SIGKILL);
            waitpid(saver, nullptr, 0);
        }
    }

    /// Starts the screen saver with these arguments. `variables` sets environment variables, such as "NAME=value".
    void startSaver(const std::string& variables, const std::string& arguments) {
        // Leak detection is off, because the display drivers leak memory and are unloaded at exit.
        saver = start("cd " + folder.string() + " && exec env HOME=" + folder.string() +
                      " ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 " + variables +
                      " " VELMORA_SCREENSAVER " " + arguments + " >out 2>err");
    }
    /// Returns the exit code, or the negative number of the signal that ended the program.
    int ended() {
        int status = 0;
        const bool ends = waitFor([&] { return waitpid(saver, &status, WNOHANG) == saver; });
        if (!ends) {
            ADD_FAILURE() << "the screen saver must end";
            kill(saver, SIGKILL);
            waitpid(saver, &status, 0);
        }
        saver = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    /// Waits until the display has this colour at a point. Returns false if this takes too long.
    bool shows(const Rgb& color, int x, int y) const {
        return waitFor([&] { return isNear(pixel(window.screenshot(), x, y), color); });
    }
    /// Returns the number of frames that the program has presented. The interposer writes a line for every 10 frames.
    int framesDrawn() const {
        const std::string lines = contents("frames");
        return static_cast<int>(std::ranges::count(lines, '\n')) * 10;
    }

    static std::unique_ptr<VirtualDisplay> display;
    ForeignWindow window{40, 30, 200, 150};
    const std::string into = "--window-id " + window.id();
    const std::string interposed = "LD_PRELOAD=" VELMORA_INTERPOSER " FRAMES_FILE=frames";
    pid_t saver = 0;
};

std::unique_ptr<VirtualDisplay> ScreensaverTest::display;

TEST_F(ScreensaverTest, ReportsBadOptionsInOneLine) {
    const struct {
        std::string variables;
        std::string arguments;
        std::string expected;
    } cases[] = {
        {"", "--bogus", "not expected: --bogus"},
        {"", "-rain 99", "--rain: "},
        {"", "-speed fast", "--speed: "},
        {"", "-rain nan", "--rain: "},
        {"", "-window-id -1", "--window-id must be the number of a window"},
        {"", "-window-id 0x1000009f8", "--window-id must be the number of a window"},
        {"", "-window-id 1x", "--window-id must be the number of a window"},
        {"", "-window-id 0x7654321", "there is no window 0x7654321"},
        {"XSCREENSAVER_WINDOW=none", "--root", "XSCREENSAVER_WINDOW must be the number"},
        {"DISPLAY=:9999", "", "cannot open the X display ':9999'"},
        {"", into + " --preset nowhere", "no such preset: nowhere"},
        {"", into + " --script nowhere", "no such gesture script: nowhere"},
    };
    for (const auto& [variables, arguments, expected] : cases) {
        SCOPED_TRACE(variables + arguments);
        startSaver(variables, arguments);
        EXPECT_EQ(ended(), 2);
        const std::string line = contents("err");
        EXPECT_NE(line.find(expected), std::string::npos) << line;
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    }
}

TEST_F(ScreensaverTest, AcceptsEveryOptionOfTheSettingsDialog) {
    std::ifstream file(VELMORA_SOURCES "/screensaver/velmora.xml");
    const std::string xml{std::istreambuf_iterator<char>(file), {}};
    const auto all = [&xml](const std::string& pattern) {
        const std::regex expression(pattern);
        return std::vector<std::smatch>(std::sregex_iterator(xml.begin(), xml.end(), expression),
                                        {});
    };
    std::vector<std::string> commands;
    std::set<std::string> presets;
    for (const std::smatch& option : all(R"re(arg(-set|-unset)?="([^"%]*)")re")) {
        commands.push_back(option[2]);
        if (option.str(2).starts_with("--preset ")) {
            presets.insert(option.str(2).substr(9) + ".json");
        }
    }
    for (const std::smatch& number :
         all(R"re(<number[^>]*arg="([^"%]*)%"[^>]*low="([^"]*)" high="([^"]*)")re")) {
        commands.push_back(number.str(1) + number.str(2));
        commands.push_back(number.str(1) + number.str(3));
    }
    for (const std::smatch& text : all(R"re(<file[^>]*arg="([^"%]*)%")re")) {
        commands.push_back(text.str(1) + "red.png");
    }
    ASSERT_GT(commands.size(), 15u);
    for (const std::string& command : commands) {
        startSaver("", command + " --window-id 0x7654321");
        EXPECT_EQ(ended(), 2);
        EXPECT_NE(contents("err").find("there is no window"), std::string::npos)
            << command << ": " << contents("err");
    }
    std::set<std::string> shipped = {"random.json"};
    for (const auto& entry : fs::directory_iterator(VELMORA_SOURCES "/presets")) {
        if (entry.path().extension() == ".json") {
            shipped.insert(entry.path().filename());
        }
    }
    EXPECT_EQ(presets, shipped);
}

TEST_F(ScreensaverTest, DrawsOnlyInTheForeignWindowAndFollowsIt) {
    startSaver("", into + " --picture red.png");
    EXPECT_TRUE(shows(red, 45, 35));
    const Pixbuf shown = window.screenshot();
    for (int at = 0; at < width * height; ++at) {
        const int x = at % width;
        const int y = at / width;
        const bool inside = x >= 40 && x < 240 && y >= 30 && y < 180;
        ASSERT_TRUE(inside || pixel(shown, x, y) == black) << x << " " << y;
    }
    EXPECT_TRUE(window.leavesInputAlone());
    window.moveAndResize(100, 80, 320, 240);
    EXPECT_TRUE(shows(red, 415, 315))
        << "the screen saver must fill the enlarged window up to its corner";
    EXPECT_TRUE(shows(black, 50, 40));
    window.moveAndResize(0, 0, 1, 1);
    EXPECT_TRUE(shows(red, 0, 0));
    window.destroy();
    EXPECT_EQ(ended(), 0);
    EXPECT_EQ(contents("err"), "");
}

TEST_F(ScreensaverTest, TheVariableNamesTheWindowAndRootFillsTheScreen) {
    startSaver("XSCREENSAVER_WINDOW=" + window.id(), "-root -picture red.png -no-ink");
    EXPECT_TRUE(shows(red, 45, 35));
    EXPECT_EQ(pixel(window.screenshot(), width - 1, height - 1), black);
    kill(saver, SIGTERM);
    EXPECT_EQ(ended(), 0);
    startSaver("", "-root -picture blue.png");
    EXPECT_TRUE(shows(blue, width - 1, height - 1));
    kill(saver, SIGINT);
    EXPECT_EQ(ended(), 0);
    EXPECT_EQ(contents("err"), "");
}

TEST_F(ScreensaverTest, AMissingPictureGivesOneLineAndAPlainPicture) {
    fs::create_directory(folder / "empty");
    fs::create_directory(folder / "bin");
    write("bin/xscreensaver-getimage", "#!/bin/sh\nexit 1\n");
    fs::permissions(folder / "bin/xscreensaver-getimage", fs::perms::owner_all);
    write("text.png", "not an image");
    for (const auto& [picture, expected] :
         {std::pair{" --picture missing.png", "no such image: missing.png"},
          {" --picture empty", "the folder has no PNG"},
          {" --picture text.png", "not a readable image"},
          {"", "cannot grab the desktop, because xscreensaver-getimage failed"}}) {
        SCOPED_TRACE(picture);
        startSaver("PATH=" + folder.string() + "/bin:$PATH", into + picture);
        EXPECT_TRUE(shows(plain, 45, 35));
        kill(saver, SIGTERM);
        EXPECT_EQ(ended(), 0);
        const std::string line = contents("err");
        EXPECT_NE(line.find(expected), std::string::npos) << line;
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
        // This run draws another picture over the plain picture, so that the program must draw the plain picture again
        // in the next case.
        startSaver("", into + " --picture red.png");
        EXPECT_TRUE(shows(red, 45, 35));
        kill(saver, SIGTERM);
        ended();
    }
}

TEST_F(ScreensaverTest, PicturesOfAFolderFadeIntoEachOther) {
    fs::create_directory(folder / "pictures");
    fs::copy(folder / "red.png", folder / "pictures");
    fs::copy(folder / "blue.png", folder / "pictures");
    write("pictures/broken.jpg", "not an image");
    startSaver("", into + " --picture pictures --duration 3");
    const auto shown = [&] { return pixel(window.screenshot(), 45, 35); };
    ASSERT_TRUE(waitFor([&] { return isNear(shown(), red) || isNear(shown(), blue); }));
    const Rgb other = isNear(shown(), red) ? blue : red;
    EXPECT_TRUE(waitFor([&] {
        const Rgb blend = shown();
        return blend[0] > 60 && blend[0] < 170 && blend[2] > 60 && blend[2] < 170;
    }));
    EXPECT_TRUE(shows(other, 45, 35));
}

TEST_F(ScreensaverTest, GrabsThePictureThatXScreenSaverChooses) {
    fs::create_directory(folder / "chosen");
    save(paint(width, height, [](double, double) { return blue; }), "chosen/blue.png");
    write(".xscreensaver", "grabDesktopImages: False\nchooseRandomImages: True\nimageDirectory: " +
                               folder.string() + "/chosen\n");
    startSaver("", into);
    EXPECT_TRUE(shows(blue, 140, 105));
    EXPECT_EQ(contents("err"), "");
}

TEST_F(ScreensaverTest, SurvivesStopsAndALostContext) {
    startSaver(interposed + " LOSE_AT=15", into + " --picture red.png --preset storm");
    ASSERT_TRUE(waitFor([&] { return framesDrawn() >= 30; })) << contents("err");
    EXPECT_TRUE(shows(red, 40, 30)) << "the picture must be visible after the context loss";
    kill(saver, SIGSTOP);
    int status = 0;
    ASSERT_EQ(waitpid(saver, &status, WUNTRACED), saver);
    const int before = framesDrawn();
    kill(saver, SIGCONT);
    EXPECT_TRUE(waitFor([&] { return framesDrawn() > before; }));
    kill(saver, SIGTERM);
    EXPECT_EQ(ended(), 0);
    EXPECT_EQ(contents("err"), "");
}

TEST_F(ScreensaverTest, EndsWithTheDisplay) {
    const std::string first = std::getenv("DISPLAY");
    const VirtualDisplay other("640x480x24");
    startSaver(interposed + " SERVER=" + std::to_string(other.process()),
               "--root --picture red.png --preset storm");
    setenv("DISPLAY", first.c_str(), 1);
    EXPECT_EQ(ended(), 0);
    EXPECT_EQ(contents("err"), "");
}

TEST_F(ScreensaverTest, EndsWithoutAWordWhenKilledAtAnyMoment) {
    std::mt19937 random(1);
    for (int run = 0; run < 12; ++run) {
        SCOPED_TRACE(run);
        startSaver("", into + (run % 2 == 0 ? " --picture red.png --preset rain" : ""));
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 600));
        kill(saver, SIGTERM);
        const int code = ended();
        EXPECT_TRUE(code == 0 || code == -SIGTERM) << code;  // -SIGTERM: before main
        EXPECT_EQ(contents("err"), "");
    }
}

TEST_F(ScreensaverTest, MemoryStaysFlat) {
    fs::create_directory(folder / "pictures");
    fs::copy(folder / "red.png", folder / "pictures");
    fs::copy(folder / "blue.png", folder / "pictures");
    window.moveAndResize(0, 0, 64, 48);
    // The clock runs twenty times as fast, so that strokes, pauses, fades and presets follow each other in seconds. Ink
    // is off, because drawing ink would take most of the test's time.
    startSaver(interposed + " CLOCK_FACTOR=20",
               into + " --picture pictures --preset random --duration 10 --no-ink --rain 5");
    ASSERT_TRUE(waitFor([&] { return framesDrawn() >= 3000; })) << contents("frames");
    std::istringstream lines(contents("frames"));
    int frame = 0;
    int early = 0;
    for (int memory = 0; lines >> frame >> memory;) {
        early = frame == 1000 ? memory : early;
        EXPECT_TRUE(early == 0 || memory < early + 4000) << memory << " kB at frame " << frame;
    }
}

/// Runs XScreenSaver with the installed screen saver. XScreenSaver refuses to run programs as root, so root runs it as
/// another user.
class XScreenSaverTest : public ScreensaverTest {
protected:
    XScreenSaverTest() {
        const std::string home = folder.string();
        run("cmake --install " VELMORA_BUILD " --component screensaver --prefix usr >installed");
        write("passwd", "root:x:0:0::/root:/bin/sh\nuser:x:12345:12345::" + home + ":/bin/sh\n");
        save(paint(width, height,
                   [](double x, double y) {
                       const bool light =
                           (static_cast<int>(x * 16) + static_cast<int>(y * 12)) % 2 == 0;
                       return light ? Rgb{230, 200, 150} : Rgb{40, 90, 120};
                   }),
             "squares.png");
        write("drag.gesture",
              "screen 480 360\nframes 40\n1 down 120 100 1\n4 move 160 130 1\n8 move 220 170 1\n"
              "12 move 300 200 1\n16 up 300 200 1\n");
        // Each frame of the gesture lasts a third of a second, so that a screenshot shows exactly one frame.
        write(".xscreensaver",
              "mode: one\nselected: 0\nlock: True\nlockTimeout: 1:00:00\nfade: False\n"
              "unfade: False\nsplash: False\ndpmsEnabled: False\nprograms: velmora-screensaver "
              "--root --picture " +
                  home + "/squares.png --speed 0.05 --script " + home + "/drag.gesture \\n\\\n");
        run("[ $(id -u) != 0 ] || chown -R 12345:12345 .");
        daemon = start("exec " + asUser("xscreensaver --no-splash >daemon 2>&1"));
    }
    ~XScreenSaverTest() override {
        kill(daemon, SIGTERM);
        waitpid(daemon, nullptr, 0);
    }

    std::string asUser(const std::string& command) const {
        const std::string home = folder.string();
        const std::string ordinary =
            "env HOME=" + home + " PATH=" + home + "/usr/bin:$PATH " + command;
        return geteuid() != 0 ? ordinary
                              : "unshare -m sh -c 'cd " + home +
                                    " && mount --bind passwd /etc/passwd && exec setpriv "
                                    "--reuid=12345 --regid=12345 --clear-groups " +
                                    ordinary + "'";
    }
    /// Sends a command to XScreenSaver.
    bool tell(const std::string& command) const {
        return run(asUser("xscreensaver-command " + command + " >told 2>&1")) == 0;
    }
    bool saverRuns() const {
        return run("pgrep -f " + folder.string() + "/[s]quares >/dev/null") == 0;
    }
    /// Plays the gesture in the player. Returns those frames that differ visibly from the picture.
    std::vector<Pixbuf> framesOfPlayer() const {
        EXPECT_EQ(run(VELMORA_PLAYER " squares.png --second squares.png --headless --script "
                                     "drag.gesture --size 480x360 --out film >player 2>&1"),
                  0)
            << contents("player");
        const Pixbuf picture = load("squares.png");
        std::vector<Pixbuf> frames;
        for (const auto& entry : fs::directory_iterator(folder / "film")) {
            Pixbuf frame = load(entry.path());
            if (entry.path().stem().string().starts_with("frame") &&
                differences(frame, picture) > 2000) {
                frames.push_back(std::move(frame));
            }
        }
        return frames;
    }
    static int differences(const Pixbuf& one, const Pixbuf& other) {
        int count = 0;
        for (int at = 0; at < width * height; ++at) {
            count +=
                isNear(pixel(one, at % width, at / width), pixel(other, at % width, at / width))
                    ? 0
                    : 1;
        }
        return count;
    }

    /// Returns true if at least a quarter of the screen is light grey, the colour of the password dialogue.
    static bool dialogueCovers(const Pixbuf& shown) {
        int count = 0;
        for (int at = 0; at < width * height; ++at) {
            const Rgb color = pixel(shown, at % width, at / width);
            count += isNear(color, {color[0], color[0], color[0]}) && color[0] > 215 ? 1 : 0;
        }
        return count > width * height / 4;
    }

    pid_t daemon = 0;
};

TEST_F(XScreenSaverTest, ShowsThePlayersFramesAndEndsAndLocks) {
    const std::vector<Pixbuf> expected = framesOfPlayer();
    ASSERT_GT(expected.size(), 3u);
    ASSERT_TRUE(waitFor([&] { return tell("-time"); })) << contents("told");
    tell("-activate");
    EXPECT_TRUE(waitFor([&] {
        const Pixbuf shown = window.screenshot();
        return std::ranges::any_of(
            expected, [&](const Pixbuf& frame) { return differences(frame, shown) == 0; });
    })) << contents("daemon");
    EXPECT_TRUE(saverRuns());

    tell("-deactivate");
    EXPECT_TRUE(waitFor([&] { return !saverRuns(); }));
    EXPECT_TRUE(shows(black, 5, 5));

    tell("-lock");
    const Pixbuf picture = load("squares.png");
    EXPECT_TRUE(shows(pixel(picture, 5, 5), 5, 5));
    EXPECT_TRUE(waitFor([&] {
        run("xdotool key shift");
        return dialogueCovers(window.screenshot());
    }));
    EXPECT_TRUE(saverRuns());
}

}  // namespace
