// Uses the player's window as a user does, on a display of its own: a pointer, keys, a dropped
// file; screenshots are looked at.

#include <fcntl.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "file_drop.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

struct Unref {
    void operator()(GdkPixbuf* pixbuf) const { g_object_unref(pixbuf); }
};
using Pixbuf = std::unique_ptr<GdkPixbuf, Unref>;
using Rgb = std::array<int, 3>;

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The calling process's descriptor of a file to be written.
int openForWriting(const fs::path& file) {
    return open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

pid_t start(const std::vector<std::string>& words, int out, int err) {
    std::vector<char*> argv;
    for (const std::string& word : words) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);
    const pid_t process = fork();
    if (process == 0) {
        dup2(out, STDOUT_FILENO);
        dup2(err, STDERR_FILENO);
        execvp(argv.front(), argv.data());
        _exit(127);
    }
    return process;
}

/// Waits as long as a slow machine may take; false when it never comes.
bool waitFor(const std::function<bool()>& come) {
    for (int turn = 0; turn < 1200; ++turn) {
        if (come()) {
            return true;
        }
        std::this_thread::sleep_for(50ms);
    }
    return false;
}

Rgb pixel(const Pixbuf& pixbuf, int x, int y) {
    const guchar* channels = gdk_pixbuf_get_pixels(pixbuf.get()) +
                             y * gdk_pixbuf_get_rowstride(pixbuf.get()) +
                             x * gdk_pixbuf_get_n_channels(pixbuf.get());
    return {channels[0], channels[1], channels[2]};
}

int difference(const Rgb& one, const Rgb& other) {
    int most = 0;
    for (std::size_t part = 0; part < one.size(); ++part) {
        most = std::max(most, std::abs(one[part] - other[part]));
    }
    return most;
}

constexpr int width = 240;
constexpr int height = 360;
constexpr Rgb plainColor = {200, 190, 150};
constexpr Rgb droppedColor = {40, 160, 90};

class WindowTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        display = start({"Xvfb", "-displayfd", "1", "-noreset", "-screen", "0", "800x800x24"},
                        ends[1], openForWriting("/dev/null"));
        close(ends[1]);
        char number[16] = {};
        ASSERT_GT(read(ends[0], number, sizeof number - 1), 0) << "Xvfb does not start";
        const std::string name = std::string(":").append(number, strcspn(number, "\n"));
        setenv("DISPLAY", name.c_str(), 1);
        unsetenv("WAYLAND_DISPLAY");
        // The window system's drivers are unloaded at the end and leave blocks behind that no
        // suppression can name. The player's own are looked for where it runs without a window.
        const char* given = std::getenv("ASAN_OPTIONS");
        const std::string options = given != nullptr ? given : "";
        setenv("ASAN_OPTIONS", (options + ":detect_leaks=0").c_str(), 1);
    }
    static void TearDownTestSuite() {
        kill(display, SIGTERM);
        waitpid(display, nullptr, 0);
    }

    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "window_test.XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        paint("plain.png", plainColor);
        paint("dropped.png", droppedColor);
        // Without ripples, whatever changes on the screen is ink.
        std::ofstream(folder / "still.json") << R"({"ripple": 0})";
    }
    void TearDown() override {
        if (player != 0) {
            kill(player, SIGKILL);
            waitpid(player, nullptr, 0);
        }
        fs::remove_all(folder);
    }

    void paint(const char* name, const Rgb& color) const {
        const Pixbuf pixbuf(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 64, 96));
        gdk_pixbuf_fill(pixbuf.get(), static_cast<guint32>(color[0]) << 24 |
                                          static_cast<guint32>(color[1]) << 16 |
                                          static_cast<guint32>(color[2]) << 8 | 0xFF);
        ASSERT_TRUE(
            gdk_pixbuf_save(pixbuf.get(), (folder / name).c_str(), "png", nullptr, nullptr));
    }

    std::vector<std::string> command(const std::vector<std::string>& more) const {
        std::vector<std::string> words = {VELMORA_PLAYER, (folder / "plain.png").string(),
                                          "--second", (folder / "plain.png").string()};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    void openWindow(const std::vector<std::string>& more) {
        std::vector<std::string> words = command(
            {"--digest", "--size", std::to_string(width) + "x" + std::to_string(height), "--shots",
             (folder / "shots").string(), "--preset", (folder / "still.json").string()});
        words.insert(words.end(), more.begin(), more.end());
        player = start(words, openForWriting(folder / "out"), openForWriting(folder / "err"));
        ASSERT_TRUE(waitFor([&] {
            return !(window = output("xdotool search --onlyvisible --name '^Velmora$'")).empty();
        })) << contents(folder / "err");
        xdotool("windowfocus");
        shot();  // frames are drawn from here on
    }

    std::string output(const std::string& shell) const {
        const fs::path file = folder / "shell";
        if (std::system((shell + " >" + file.string() + " 2>/dev/null").c_str()) != 0) {
            return {};
        }
        std::string line = contents(file);
        return line.substr(0, line.find('\n'));
    }

    /// A verb that takes a window, then words of its own.
    void xdotool(const std::string& verb, const std::string& more = "") const {
        ASSERT_EQ(std::system(("xdotool " + verb + " " + window + " " + more).c_str()), 0);
    }

    static void press(const std::string& key) {
        ASSERT_EQ(std::system(("xdotool key " + key).c_str()), 0);
    }

    void drag(int fromX, int fromY, int toX, int toY) const {
        constexpr int moves = 12;
        for (int move = 0; move <= moves; ++move) {
            xdotool("mousemove --window", std::to_string(fromX + (toX - fromX) * move / moves) +
                                              " " +
                                              std::to_string(fromY + (toY - fromY) * move / moves));
            if (move == 0) {
                std::system("xdotool mousedown 1");
            }
            std::this_thread::sleep_for(30ms);
        }
        std::system("xdotool mouseup 1");
    }

    /// What the window shows now, by its screenshot key.
    Pixbuf shot() {
        char name[32];
        std::snprintf(name, sizeof name, "shot-%02d.png", ++shots);
        const fs::path file = folder / "shots" / name;
        press("s");
        Pixbuf picture;
        EXPECT_TRUE(waitFor([&] {
            picture.reset(gdk_pixbuf_new_from_file(file.c_str(), nullptr));
            return picture != nullptr;
        })) << contents(folder / "err");
        return picture;
    }

    int exitCode() {
        int status = -1;
        EXPECT_TRUE(waitFor([&] { return waitpid(player, &status, WNOHANG) == player; }));
        player = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// The velocity digests that a headless replay prints.
    std::string replayed(const fs::path& script, const std::string& more = "") const {
        std::string shell;
        for (const std::string& word :
             command({"--headless", "--digest", "--script", script.string(), "--size",
                      std::to_string(width) + "x" + std::to_string(height), "--out",
                      (folder / "replay").string()})) {
            shell += word + " ";
        }
        return output("{ " + shell + more + "; } 2>/dev/null | grep velocity");
    }

    static pid_t display;
    fs::path folder;
    pid_t player = 0;
    std::string window;
    int shots = 0;
};

pid_t WindowTest::display = 0;

TEST_F(WindowTest, InkGoesWhereTheFingerWentAndNowhereElse) {
    openWindow({"--no-attract"});
    const Pixbuf before = shot();
    ASSERT_TRUE(before);
    drag(60, 60, 120, 150);
    const Pixbuf after = shot();
    ASSERT_TRUE(after);
    int stained = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            // from the middle of the stroke; the flow carries ink some way along
            const bool near = std::hypot(x - 90, y - 105) < 130;
            const int change = difference(pixel(before, x, y), pixel(after, x, y));
            stained += near && change > 40 ? 1 : 0;
            ASSERT_TRUE(near || change <= 6) << "at " << x << " " << y;
        }
    }
    EXPECT_GT(stained, 300);
    press("c");
    std::this_thread::sleep_for(500ms);
    EXPECT_LE(difference(pixel(shot(), 90, 105), plainColor), 6) << "the key clears the ink";
}

TEST_F(WindowTest, AnIdleWindowShowsAFingerOfItsOwnUntilTheUserComes) {
    openWindow({});
    const auto stained = [&] {
        const Pixbuf picture = shot();
        for (int y = 0; y < height; y += 4) {
            for (int x = 0; x < width; x += 4) {
                if (difference(pixel(picture, x, y), plainColor) > 40) {
                    return true;
                }
            }
        }
        return false;
    };
    std::this_thread::sleep_for(6s);  // a key would be the user
    EXPECT_TRUE(waitFor(stained));
    drag(20, 20, 30, 20);
    press("c");
    EXPECT_TRUE(waitFor([&] { return !stained(); })) << "it draws on beside the user's";
}

TEST_F(WindowTest, RecordingsReplayToTheLastByte) {
    openWindow({"--no-attract", "--record", (folder / "first.gesture").string()});
    drag(60, 60, 120, 150);
    press("r");  // ends it
    ASSERT_TRUE(waitFor([&] { return !contents(folder / "out").empty(); }));
    drag(150, 300, 60, 200);
    press("r");  // in the middle of a session that has seen other gestures
    const fs::path second = folder / "shots/gesture-01.gesture";
    ASSERT_TRUE(waitFor([&] { return fs::exists(second); }));
    shot();
    drag(60, 200, 200, 80);
    press("l");  // the context goes, the recording goes on
    shot();
    drag(100, 100, 110, 105);
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents(folder / "err");
    const std::string digests = contents(folder / "out");
    EXPECT_EQ(digests, replayed(folder / "first.gesture") + "\n" + replayed(second) + "\n");
    EXPECT_NE(contents(second).find("lose-context"), std::string::npos);
}

TEST_F(WindowTest, ACrashKeepsTheRecordingInProgress) {
    openWindow({"--no-attract", "--record", (folder / "kept.gesture").string()});
    drag(60, 60, 120, 150);
    ASSERT_TRUE(waitFor(
        [&] { return contents(folder / "kept.gesture").find(" up ") != std::string::npos; }));
    kill(player, SIGKILL);
    exitCode();
    EXPECT_NE(replayed(folder / "kept.gesture", "--frames 2"), "");
}

TEST_F(WindowTest, TakesANewSizeADroppedPictureAndANewContext) {
    openWindow({"--no-attract"});
    xdotool("windowsize", "200 300");
    xdotool("mousemove --window", "100 150");
    Pixbuf small;
    ASSERT_TRUE(waitFor([&] {
        small = shot();
        return small && gdk_pixbuf_get_width(small.get()) == 200;
    }));
    EXPECT_EQ(gdk_pixbuf_get_height(small.get()), 300);
    EXPECT_LE(difference(pixel(small, 100, 150), plainColor), 6);

    ASSERT_TRUE(dropFile(std::stoul(window), (folder / "dropped.png").string()));
    EXPECT_TRUE(waitFor([&] { return difference(pixel(shot(), 100, 150), droppedColor) <= 6; }));
    ASSERT_TRUE(dropFile(std::stoul(window), (folder / "still.json").string()));
    ASSERT_TRUE(waitFor([&] {
        return contents(folder / "err").find("not a readable picture: ") != std::string::npos;
    })) << "told, and the window stays";

    press("l");
    EXPECT_LE(difference(pixel(shot(), 100, 150), droppedColor), 6);
    EXPECT_TRUE(waitFor([&] {
        drag(60, 150, 140, 150);
        return difference(pixel(shot(), 100, 150), droppedColor) > 20;
    })) << "ink after the loss";
    press("Escape");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(WindowTest, SaysInOneLineWhyItCannotOpen) {
    std::ofstream(folder / "taken.gesture") << "mine";
    const struct {
        std::string variables;
        std::string arguments;
        std::string told;
    } cases[] = {
        {"DISPLAY=:9999", "", "cannot open a window"},
        {"SDL_VIDEODRIVER=dummy", "", "cannot open a window with OpenGL ES 2.0"},
        {"", "--record " + (folder / "taken.gesture").string(), "would overwrite"},
        {"", "--record /nowhere/a.gesture", "cannot write the recording"},
        {"", "--preset /nowhere.json", "cannot read the preset"},
    };
    for (const auto& [variables, arguments, told] : cases) {
        SCOPED_TRACE(variables + arguments);
        std::string shell = variables + " timeout 60";
        for (const std::string& word : command({arguments})) {
            shell += " " + word;
        }
        const int status = std::system((shell + " 2>" + (folder / "err").string()).c_str());
        EXPECT_EQ(WEXITSTATUS(status), 2);
        const std::string line = contents(folder / "err");
        EXPECT_NE(line.find(told), std::string::npos) << line;
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    }
    EXPECT_EQ(contents(folder / "taken.gesture"), "mine");
}

}  // namespace
