// Tests the player's window on a virtual display with pointer, keys and dropped files, as a user would. Checks images
// of the window on the display, and the screenshots that the player saves.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "file_drop.h"
#include "tests/desktop_files.h"
#include "tests/virtual_display.h"

namespace {

using namespace std::chrono_literals;

int difference(const Rgb& one, const Rgb& other) {
    return std::max(
        {std::abs(one[0] - other[0]), std::abs(one[1] - other[1]), std::abs(one[2] - other[2])});
}

constexpr int width = 240;
constexpr int height = 360;
constexpr Rgb plainColor = {200, 190, 150};
constexpr Rgb droppedColor = {40, 160, 90};

/// Counts the pixels that do not have the colour of the background. Skips the top 40 rows with the on-screen
/// indicators, and the bottom 64 rows with the toasts.
int stains(const Pixbuf& image) {
    const int columns = gdk_pixbuf_get_width(image.get());
    int count = 0;
    for (int at = columns * 40; at < columns * (gdk_pixbuf_get_height(image.get()) - 64); ++at) {
        count += difference(pixel(image, at % columns, at / columns), plainColor) > 40 ? 1 : 0;
    }
    return count;
}

/// Bounding box, in pixels.
struct Box {
    int left, top, right, bottom;
};
/// Returns the bounding box of all pixels above the toast that do not have the colour of the background.
Box panelIn(const Pixbuf& image) {
    const int columns = gdk_pixbuf_get_width(image.get());
    const int rows = gdk_pixbuf_get_height(image.get()) - 64;
    Box box{columns, rows, 0, 0};
    for (int at = 0; at < columns * rows; ++at) {
        if (difference(pixel(image, at % columns, at / columns), plainColor) > 40) {
            box = {std::min(box.left, at % columns), std::min(box.top, at / columns),
                   std::max(box.right, at % columns + 1), std::max(box.bottom, at / columns + 1)};
        }
    }
    return box;
}

/// Returns the first pixel row of each heading in the panel.
std::vector<int> headings(const Pixbuf& image) {
    std::vector<int> rows;
    for (int y = 1; y < gdk_pixbuf_get_height(image.get()) - 64; ++y) {
        const auto on = [&](int row) {
            return difference(pixel(image, 18, row), {28, 51, 77}) <= 2;
        };
        if (on(y) && !on(y - 1)) {
            rows.push_back(y);
        }
    }
    return rows;
}

class WindowTest : public FolderTest {
protected:
    static void SetUpTestSuite() { display = std::make_unique<VirtualDisplay>("800x800x24"); }
    static void TearDownTestSuite() { display.reset(); }

    WindowTest() {
        save(paint(64, 96, [](double, double) { return plainColor; }), "plain.png");
        save(paint(64, 96, [](double, double) { return droppedColor; }), "dropped.png");
        // This preset has no ripples, so that only ink changes the screen.
        write("still.json", R"({"ripple": 0})");
    }
    ~WindowTest() override {
        if (player != 0) {
            kill(player, SIGKILL);
            exitCode();
        }
    }

    void openWindow(const std::string& more = "--no-attract") {
        player = start("cd " + folder.string() + " && " + limit + "exec " + command + " " + sized +
                       " " + preset + " " + more + " >out 2>err");
        ASSERT_TRUE(waitFor([&] {
            run("xdotool search --onlyvisible --name '^Velmora$' 2>/dev/null | tr -d '\\n' >found");
            return !(window = contents("found")).empty();
        })) << contents("err");
        xdotool("windowfocus " + window);
        ASSERT_TRUE(waitFor([&] { return stains(capture()) == 0; }))
            << "the window must show the background";
    }

    void xdotool(const std::string& words) const { ASSERT_EQ(run("xdotool " + words), 0) << words; }
    void press(const std::string& key) const { xdotool("key " + key); }
    void pointAt(int x, int y) const {
        xdotool("mousemove --window " + window + " " + std::to_string(x) + " " + std::to_string(y));
    }
    /// Plays one frame, which applies all earlier events, and leaves the window paused. Then takes a screenshot and
    /// waits for it, so that events after this call apply to a later frame.
    void step() {
        press("period");
        shot();
    }
    /// Drags the pointer with one move event per frame. Afterwards, the window is paused.
    void drag(int fromX, int fromY, int toX, int toY) {
        pointAt(fromX, fromY);
        xdotool("mousedown 1");
        step();
        for (int move = 1; move <= 12; ++move) {
            pointAt(fromX + (toX - fromX) * move / 12, fromY + (toY - fromY) * move / 12);
            step();
        }
        xdotool("mouseup 1");
        step();
    }

    /// Takes a screenshot with the player's key. The screenshot shows neither the panel nor a toast.
    Pixbuf shot() {
        char name[32];
        std::snprintf(name, sizeof name, "shots/shot-%02d.png", ++shots);
        press("s");
        Pixbuf image;
        EXPECT_TRUE(waitFor([&] { return (image = load(name)) != nullptr; })) << contents("err");
        return image;
    }
    /// Captures the window from the display, with the panel, the on-screen indicators and the toast.
    Pixbuf capture() const {
        run("ffmpeg -nostdin -v error -y -f x11grab -draw_mouse 0 -window_id " + window +
            " -i $DISPLAY -frames:v 1 capture.png");
        return load("capture.png");
    }

    /// Saves a preset under the suggested name and returns the text of the preset. `file` is the expected name.
    std::string savedAs(const std::string& file) const {
        press("p");
        press("Return");
        EXPECT_TRUE(waitFor([&] { return fs::exists(folder / file) && !contents(file).empty(); }));
        return contents(file);
    }
    /// Answers the question of a dialog that a key opens. First waits until the text field of the dialog has the focus.
    void answer(const std::string& key, const std::string& text) const {
        press(key);
        ASSERT_TRUE(waitFor([&] { return stains(capture()) > 300; })) << "the dialog must open";
        capture();
        xdotool("type " + text);
        press("Return");
    }

    int exitCode() {
        int status = -1;
        EXPECT_TRUE(waitFor([&] { return waitpid(player, &status, WNOHANG) == player; }));
        player = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// Replays a script without a window. Returns the line with the velocity digest from the player's output.
    std::string replayed(const std::string& script) const {
        run(command + " " + sized + " --headless --digest --out replay --script " + script +
            " 2>/dev/null | grep velocity >replayed");
        return contents("replayed");
    }

    static std::unique_ptr<VirtualDisplay> display;
    // Leak detection is off: the display drivers leak memory and are unloaded at exit, so no suppression can name the
    // leaking functions. The tests without a window detect leaks of the player.
    const std::string command =
        "env ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 XDG_CONFIG_HOME=" + folder.string() +
        "/config " VELMORA_PLAYER " --second plain.png";
    /// Arguments for the background and the screen size. A test can leave out the screen size.
    std::string sized = "plain.png --size " + std::to_string(width) + "x" + std::to_string(height);
    std::string limit;
    std::string preset = "--digest --preset still.json";
    pid_t player = 0;
    std::string window;
    int shots = 0;
};

std::unique_ptr<VirtualDisplay> WindowTest::display;

TEST_F(WindowTest, InkAppearsOnlyAlongTheStroke) {
    openWindow();
    drag(60, 60, 120, 150);
    const Pixbuf after = shot();
    ASSERT_GT(stains(after), 300);
    for (int at = 0; at < width * height; ++at) {
        // The flow carries ink beyond the stroke, but at most 170 pixels from the middle of the stroke. Farther away,
        // each pixel must have nearly the background colour.
        ASSERT_TRUE(std::hypot(at % width - 90, at / width - 105) < 170 ||
                    difference(pixel(after, at % width, at / width), plainColor) <= 6)
            << at % width << " " << at / width;
    }
    press("c");
    step();
    EXPECT_EQ(stains(shot()), 0) << "the key C must clear the ink";
}

TEST_F(WindowTest, AnIdleWindowStartsAttractModeUntilTheUserTouches) {
    openWindow("");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) > 300; }));
    pointAt(20, 20);
    xdotool("click 1");
    press("c");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) == 0; }))
        << "attract mode must end after a touch";
}

TEST_F(WindowTest, AReplayOverAttractModeHasTheInkOfItsScript) {
    write("green.json", R"({"ripple": 0, "ink": [0.3, 1, 0.3], "timeScale": 2, "meshDetail": 30})");
    preset = "--digest --preset green.json";
    openWindow("--size 120x180");
    constexpr std::size_t red = 0;
    constexpr std::size_t green = 1;
    constexpr std::size_t blue = 2;
    const auto shows = [&](std::size_t light, std::size_t dark, int more) {
        const Pixbuf shown = capture();
        int count = 0;
        for (int at = 0; at < 120 * 110; ++at) {
            const Rgb color = pixel(shown, at % 120, at / 120);
            count += color[light] > color[dark] + more ? 1 : 0;
        }
        return count > 100;
    };
    ASSERT_TRUE(waitFor([&] { return shows(blue, red, 0); }))
        << "the second stroke of attract mode must be blue; the preset's ink and the background "
           "are not";
    std::string script = "screen 120 180\nframes 30\n0 ink 1 0.3 0.3\n1 down 20 50 1\n";
    for (int frame = 2; frame < 28; ++frame) {
        script += std::to_string(frame) + " move " + std::to_string(20 + 3 * frame) + " 60 1\n";
    }
    write("red.gesture", script);
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "red.gesture"));
    ASSERT_TRUE(waitFor([&] { return !contents("out").empty(); }));
    EXPECT_TRUE(shows(red, green, 60));
    EXPECT_FALSE(shows(blue, red, 0));
}

TEST_F(WindowTest, AClickOnThePanelChangesItsControlAndLeavesNoInk) {
    constexpr Rgb red = {255, 89, 89};
    openWindow("--no-attract --size 640x780");
    pointAt(600, 700);
    xdotool("click 3");  // the panel sees the new pointer position only after a mouse event
    press("Tab");
    std::vector<int> groups;
    ASSERT_TRUE(waitFor([&] { return (groups = headings(capture())).size() == 6; }));
    pointAt(100, groups[2] + 5);  // groups: water, light, ink, view, save, developer
    xdotool("click 1");
    int at = 0;
    ASSERT_TRUE(waitFor([&] {  // finds the palette's red
        const Pixbuf shown = capture();
        at = 0;
        while (at < 640 * 700 && difference(pixel(shown, at % 640, at / 640), red) > 2) {
            ++at;
        }
        return at < 640 * 700;
    }));
    pointAt(at % 640 + 8, at / 640 + 8);
    xdotool("mousedown 1");
    // Advance two frames. If the press on the panel also touched the water, these frames would add ink. Do not use
    // step(): its screenshot hides the panel.
    press("period");
    press("period");
    xdotool("mouseup 1");
    EXPECT_TRUE(waitFor([&] {
        press("p");
        press("Return");
        run("cat shots/preset-*.json >presets 2>/dev/null");
        return contents("presets").find("\"ink\": [\n        1,") != std::string::npos;
    }));
    EXPECT_EQ(stains(shot()), 0) << "a finger on the panel must leave no ink";
}

TEST_F(WindowTest, ThePanelFitsAPhoneAtAnyScaleAndStaysInTheWindow) {
    constexpr Rgb changed = {255, 190, 70};
    openWindow("--no-attract --letters 3 --size 450x800");
    pointAt(440, 700);
    press("Tab");
    Box box;
    EXPECT_TRUE(waitFor([&] {  // true after the first toast has gone
        box = panelIn(capture());
        return box.right > 200 && box.right - box.left <= 450 * 6 / 10 &&
               box.bottom - box.top <= 800 * 6 / 10;
    })) << box.left
        << " " << box.top << " " << box.right << " " << box.bottom;
    const int wide = box.right - box.left;

    const auto marked = [&] {
        const Pixbuf shown = capture();
        int count = 0;
        for (int at = 0; at < 450 * 100; ++at) {
            count += difference(pixel(shown, at % 450, at / 450), changed) < 8 ? 1 : 0;
        }
        return count > 20;
    };
    EXPECT_FALSE(marked());
    press("b");
    EXPECT_TRUE(waitFor(marked))
        << "the preset's name must change its colour after an unsaved change";
    press("BackSpace");
    EXPECT_TRUE(waitFor([&] { return !marked(); }));

    /// Returns the last column with white text of the name of the preset, left of the arrow of the list.
    const auto endOfName = [&] {
        const Pixbuf shown = capture();
        int end = 0;
        for (int at = 450 * 44; at < 450 * 66; ++at) {
            const bool isText = pixel(shown, at % 450, at / 450)[0] > 200;
            end = isText && at % 450 < 230 ? std::max(end, at % 450) : end;
        }
        return end;
    };
    const int endOfPreset = endOfName();
    ASSERT_GT(endOfPreset, 0);
    press("m");
    EXPECT_TRUE(waitFor([&] { return endOfName() > endOfPreset && !marked(); }))
        << "the panel must show the name of the random settings, without the mark of a change";
    press("BackSpace");
    EXPECT_TRUE(waitFor([&] { return endOfName() == endOfPreset; }));

    pointAt(100, 15);
    xdotool(
        "mousedown 1 mousemove_relative 20 20 sleep 0.2 mousemove_relative 330 500 sleep 0.2 "
        "mouseup 1");
    ASSERT_TRUE(waitFor([&] { return (box = panelIn(capture())).left > 100; }));
    EXPECT_EQ(box.right - box.left, wide)
        << "the panel must not be clipped at the edge of the window";
    for (const int across : {300, 450}) {
        xdotool("windowsize " + window + " " + std::to_string(across) + " " +
                std::to_string(across * 16 / 9));
        EXPECT_TRUE(waitFor([&] {
            const Pixbuf shown = capture();
            box = panelIn(shown);
            return gdk_pixbuf_get_width(shown.get()) == across && box.top > 0 &&
                   box.right - box.left > across / 2 - 10 &&
                   box.right - box.left <= across * 6 / 10;
        })) << box.left
            << " " << box.right;
    }
    EXPECT_EQ(box.right - box.left, wide);
}

TEST_F(WindowTest, TheFilmKeyWritesAFilmThatPlays) {
    openWindow();
    const auto plays = [&](const std::string& film) {
        const std::string found = probed(film);
        return found.starts_with("240,360,") && std::stoi(found.substr(found.rfind(',') + 1)) >= 6;
    };
    const auto film = [&](const std::string& keyAtEnd) {
        press("f");
        for (int frame = 0; frame < 6; ++frame) {
            step();
        }
        press(keyAtEnd);
    };
    film("f");
    EXPECT_TRUE(waitFor([&] { return plays("shots/film-01.mp4"); })) << contents("probed");
    film("q");
    EXPECT_EQ(exitCode(), 0) << contents("err");
    EXPECT_TRUE(plays("shots/film-02.mp4"))
        << "the film must be playable after the window is closed";
}

TEST_F(WindowTest, AFilmHasTheDurationOfTheFilmingAndShowsAMark) {
    openWindow();
    const auto redDot = [&] {
        const Pixbuf shown = capture();
        for (int at = 0; at < width * 40; ++at) {
            if (difference(pixel(shown, at % width, at / width), {230, 30, 30}) < 8) {
                return true;
            }
        }
        return false;
    };
    press("f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.mp4") && redDot(); }));
    const auto begin = std::chrono::steady_clock::now();
    drag(60, 60, 120, 150);
    ASSERT_TRUE(waitFor([&] {  // true after the toast has gone
        return difference(pixel(capture(), width / 2, height - 20), plainColor) < 8;
    }));
    EXPECT_TRUE(redDot()) << "the red dot must stay while the film is recorded";
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    press("f");
    double filmed = 0.0;
    EXPECT_TRUE(waitFor([&] {
        run("ffprobe -v error -show_entries format=duration -of csv=p=0 shots/film-01.mp4 "
            ">length 2>/dev/null");
        return (filmed = std::atof(contents("length").c_str())) > 0.0;
    }));
    EXPECT_GT(filmed, 0.85 * seconds);
    EXPECT_TRUE(waitFor([&] { return !redDot(); }));
}

TEST_F(WindowTest, ANewSizeContinuesAFilmAndEndsARecording) {
    openWindow("--no-attract --format gif --record kept.gesture");
    press("f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.gif"); }));
    xdotool("windowsize " + window + " 360 240");
    ASSERT_TRUE(waitFor([&] {
        return contents("kept.gesture").find("frames") != std::string::npos;
    })) << "the resize must end the recording of the gesture";
    ASSERT_TRUE(waitFor([&] { return gdk_pixbuf_get_width(shot().get()) == 360; }));
    press("f");
    ASSERT_TRUE(waitFor([&] { return !probed("shots/film-01.gif").empty(); }));
    EXPECT_TRUE(probed("shots/film-01.gif").starts_with("240,360,"));
    shot();
    EXPECT_FALSE(fs::exists(folder / "shots/film-02.gif"))
        << "the second press of the key must not start a second film";
    run("ffmpeg -v error -i shots/film-01.gif -update 1 last.png");
    const Pixbuf last = load("last.png");
    EXPECT_LT(difference(pixel(last, 120, 20), {0, 0, 0}), 20)
        << "after the resize, the film must have black bars above and below the frame";
    EXPECT_LT(difference(pixel(last, 120, 180), plainColor), 20);
}

TEST_F(WindowTest, AnIdleGifRepeatsNoFrame) {
    openWindow("--no-attract --format gif");
    press("f");
    std::this_thread::sleep_for(2s);
    press("q");
    EXPECT_EQ(exitCode(), 0) << contents("err");
    run("ffprobe -v error -count_packets -show_entries stream=nb_read_packets -show_entries "
        "format=duration -of csv=p=0 shots/film-01.gif >probed");
    double frames = 0.0;
    double seconds = 0.0;
    std::sscanf(contents("probed").c_str(), "%lf %lf", &frames, &seconds);
    EXPECT_GT(seconds, 1.0);
    EXPECT_LT(frames, 16.0 * seconds)
        << "a film of an idle effect must have fewer than 16 frames per second";
}

TEST_F(WindowTest, WindowsThatShareAFolderUseDifferentFileNames) {
    openWindow();
    const pid_t other = start("cd " + folder.string() + " && exec " + command + " " + sized +
                              " --no-attract >out2 2>err2");
    std::string second;
    ASSERT_TRUE(waitFor([&] {
        run("xdotool search --onlyvisible --name '^Velmora$' | grep -v " + window + " >found");
        return !(second = contents("found")).empty();
    }));
    second.pop_back();
    xdotool("windowfocus --sync " + window + " key f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.mp4"); }))
        << "the film's file must exist before its first frame";
    xdotool("windowfocus --sync " + second + " key f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-02.mp4"); }));
    press("q");
    waitpid(other, nullptr, 0);
    xdotool("windowfocus --sync " + window + " key q");
    EXPECT_EQ(exitCode(), 0);
    EXPECT_NE(probed("shots/film-01.mp4"), "");
    EXPECT_NE(probed("shots/film-02.mp4"), "");
}

TEST_F(WindowTest, LoadsSavedPresetsAndDroppedPresetsAndScripts) {
    openWindow();
    const std::string still = savedAs("shots/preset-01.json");
    Pixbuf portrait;
    ASSERT_TRUE(
        waitFor([&] { return (portrait = load("shots/preset-01.preset.jpg")) != nullptr; }));
    EXPECT_LT(difference(pixel(portrait, 64, 64), plainColor), 8);
    write("DROPPED.JSON", R"({"ripple": 0, "ink": [1, 0.5, 0.25]})");
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "DROPPED.JSON"));
    const std::string dropped = savedAs("shots/preset-02.json");
    EXPECT_NE(dropped.find("0.25"), std::string::npos);
    run("ls " VELMORA_PRESETS "/*.json >shipped");
    const std::string shipped = contents("shipped");
    // The list contains the default settings, then the shipped presets, and then the first saved preset. Go down to the
    // saved preset.
    for (auto left = std::ranges::count(shipped, '\n') + 2; left > 0; --left) {
        press("n");
    }
    press("b");  // the window does not save an unchanged preset again
    std::string changed = savedAs("shots/preset-03.json");
    const std::string second = "\"secondBackground\": ";
    changed.replace(changed.find(second + "true"), second.size() + 4, second + "false");
    EXPECT_EQ(changed, still);
    // The list contains relative paths, and a dropped file has an absolute path.
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "shots/preset-02.json"));
    answer("t", "own");
    EXPECT_TRUE(waitFor([&] { return fs::exists(folder / "shots/own.json"); }))
        << "a dropped preset from the folder of the user's presets must be renamed";
    write("drop.Gesture", "screen 24 36\nframes 400\n1 down 6 6 1\n2 move 8 8 1\n3 move 12 15 1\n");
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "drop.Gesture"));
    EXPECT_TRUE(waitFor([&] { return stains(capture()) > 100; }));
}

TEST_F(WindowTest, NamesRenamesAndDeletesPresetsAndUndoesChanges) {
    openWindow();
    const std::string before = savedAs("shots/preset-01.json");
    press("b");
    answer("p", "pond");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/pond.preset.jpg"); }));
    press("p");  // opens no dialog, because these settings are already saved
    answer("t", "lake");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/lake.preset.jpg"); }));
    EXPECT_NE(contents("shots/lake.json"), before);
    EXPECT_FALSE(fs::exists(folder / "shots/pond.json") ||
                 fs::exists(folder / "shots/pond.preset.jpg"));
    press("ctrl+z");
    EXPECT_EQ(savedAs("shots/preset-02.json"), before);
    press("y");
    EXPECT_EQ(savedAs("shots/preset-03.json"), contents("shots/lake.json"));
    press("Delete");
    press("Return");
    ASSERT_TRUE(waitFor([&] { return !fs::exists(folder / "shots/preset-03.json"); }));
    press("Delete");
    EXPECT_TRUE(waitFor([&] {
        return contents("err").find("Default is built in and cannot be") != std::string::npos;
    }));
    answer("p", "ember");
    EXPECT_TRUE(waitFor([&] {
        return contents("err").find("a preset named 'ember' already exists") != std::string::npos;
    }));
}

TEST_F(WindowTest, APresetNeverReplacesOrRemovesAPictureOfTheUser) {
    save(paint(64, 96, [](double, double) { return plainColor; }), "photo.jpg", "jpeg");
    save(paint(64, 96, [](double, double) { return droppedColor; }), "beach.jpg", "jpeg");
    const std::string photo = contents("photo.jpg");
    const std::string beach = contents("beach.jpg");
    openWindow("--no-attract --shots .");
    press("b");
    answer("p", "photo");
    EXPECT_TRUE(waitFor([&] { return load("photo.preset.jpg") != nullptr; }));
    answer("t", "beach");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "beach.json"); }));
    press("Delete");
    press("Return");
    ASSERT_TRUE(waitFor([&] { return !fs::exists(folder / "beach.json"); }));
    press("q");
    EXPECT_EQ(exitCode(), 0);
    EXPECT_TRUE(contents("photo.jpg") == photo) << "a rename must keep the user's picture";
    EXPECT_TRUE(contents("beach.jpg") == beach) << "a deletion must keep the user's picture";
    EXPECT_FALSE(fs::exists(folder / "photo.preset.jpg") ||
                 fs::exists(folder / "beach.preset.jpg"));
}

TEST_F(WindowTest, KeysBelongToAPopUpFromTheKeyThatOpensIt) {
    openWindow();
    /// Presses keys in such quick succession that the window gets them before it can show the pop-up.
    const auto pressAtOnce = [&](const std::string& keys) { xdotool("key --delay 0 " + keys); };
    std::string second = savedAs("shots/preset-01.json");
    second.replace(second.find("\"secondBackground\": false"), 25, "\"secondBackground\": true");
    press("b");
    pressAtOnce("p m o o n Return");
    ASSERT_TRUE(waitFor([&] { return !contents("shots/moon.json").empty(); })) << contents("err");
    EXPECT_EQ(contents("shots/moon.json"), second) << "the key M must not change the settings";
    pressAtOnce("t q Return");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/q.json"); }));
    pressAtOnce("Delete n Escape");
    pressAtOnce("o n Escape");
    pressAtOnce("t s e a Return");
    EXPECT_TRUE(waitFor([&] { return fs::exists(folder / "shots/sea.json"); }))
        << "the key N must not load another preset";
    press("f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.mp4"); }));
    press("b");
    pressAtOnce("p Escape");
    shot();
    EXPECT_EQ(probed("shots/film-01.mp4"), "") << "Esc must close only the pop-up";
    press("Escape");
    EXPECT_TRUE(waitFor([&] { return probed("shots/film-01.mp4") != ""; }));
}

TEST_F(WindowTest, TheListOfPresetsRenamesAndDeletesAPresetOfTheUser) {
    openWindow("--no-attract --size 640x780");
    savedAs("shots/preset-01.json");
    ASSERT_TRUE(waitFor([&] { return load("shots/preset-01.preset.jpg") != nullptr; }));
    press("n");  // the commands must work for a preset that is not loaded
    press("Tab");
    ASSERT_TRUE(waitFor([&] { return panelIn(capture()).right > 200; }));
    /// Opens the list of presets and clicks on the button with three dots, the only button in the list.
    const auto openMenu = [&] {
        pointAt(100, 40);
        xdotool("click 1");
        capture();
        pointAt(100, 200);
        xdotool("click --repeat 20 5");  // scrolls to the end
        int at = 0;
        const bool found = waitFor([&] {
            const Pixbuf shown = capture();
            at = 640 * 60;  // below the name of the loaded preset
            while (at < 640 * 700 && pixel(shown, at % 640, at / 640) != Rgb{41, 66, 94}) {
                ++at;
            }
            return at < 640 * 700;
        });
        pointAt(at % 640 + 8, at / 640 + 4);
        xdotool("click 1");
        capture();
        return found ? at : 0;
    };
    const auto chooseRow = [&](int place, int row) {
        pointAt(place % 640 + 30, place / 640 + 22 + 20 * row);
        xdotool("click 1");
        capture();
    };
    const int place = openMenu();
    ASSERT_GT(place, 0);
    chooseRow(place, 0);
    xdotool("type lake");
    press("Return");
    EXPECT_TRUE(waitFor([&] {
        return fs::exists(folder / "shots/lake.json") &&
               fs::exists(folder / "shots/lake.preset.jpg") &&
               !fs::exists(folder / "shots/preset-01.json");
    }));
    ASSERT_GT(openMenu(), 0);
    chooseRow(place, 1);
    press("Return");
    EXPECT_TRUE(waitFor([&] { return !fs::exists(folder / "shots/lake.json"); }));
}

TEST_F(WindowTest, AListOfFilesOpensAPicture) {
    openWindow("--no-attract --size 640x780");
    press("o");
    std::vector<int> lines;  // last rows of the lines of text
    const auto hasText = [](const Pixbuf& shown, int y) {
        for (int x = 36; x < 100; ++x) {
            if (pixel(shown, x, y)[1] > 100) {
                return true;
            }
        }
        return false;
    };
    ASSERT_TRUE(waitFor([&] {
        const Pixbuf shown = capture();
        lines.clear();
        for (int y = 140; y < 640; ++y) {
            if (hasText(shown, y - 1) && !hasText(shown, y)) {
                lines.push_back(y);
            }
        }
        return lines.size() > 3 && lines.size() < 20;
    }));
    // The last three lines of the list are dropped.png, plain.png and still.json. Click on dropped.png.
    pointAt(60, lines[lines.size() - 3] - 6);
    xdotool("click 1");
    EXPECT_TRUE(waitFor([&] { return difference(pixel(capture(), 20, 20), droppedColor) <= 6; }));
}

TEST_F(WindowTest, SwitchesShowAToastAndAPauseShowsAMark) {
    openWindow();
    /// Returns the number of dark pixels in a row. The background and the overlays are brighter.
    const auto darkPixels = [&](int y) {
        const Pixbuf shown = capture();
        int count = 0;
        for (int x = 0; x < width; ++x) {
            count += std::ranges::max(pixel(shown, x, y)) < 110 ? 1 : 0;
        }
        return count;
    };
    /// Returns the width of the toast, or 0 if there is no toast. Measures the lowest row of the toast, which has no text.
    const auto toastWidth = [&] { return darkPixels(height - 10); };
    int toast = toastWidth();
    ASSERT_GT(toast, 0) << "the window must open with a toast";
    for (const std::string key : {"a", "v", "d", "b", "w", "c", "l", "space"}) {
        press(key);
        int next = 0;
        // The old toast disappears by itself, so wait for a toast of another width. The texts differ in width.
        EXPECT_TRUE(waitFor([&] { return (next = toastWidth()) > 0 && next != toast; }))
            << "no toast after the key " << key;
        toast = next;
    }
    EXPECT_GT(darkPixels(15), 0) << "a pause must show an on-screen indicator";
    press("space");
    EXPECT_TRUE(waitFor([&] { return darkPixels(15) == 0; }))
        << "the on-screen indicator must disappear after the pause";
}

TEST_F(WindowTest, APausedWindowShowsChanges) {
    openWindow("--no-attract --second dropped.png");
    const auto shows = [&](const Rgb& color) {
        return difference(pixel(shot(), 100, 150), color) <= 6 &&
               difference(pixel(capture(), 100, 150), color) <= 6;
    };
    drag(60, 150, 140, 150);
    ASSERT_GT(stains(capture()), 0);
    press("c");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) == 0; })) << "the key C must clear the ink";
    drag(60, 150, 140, 150);
    press("r");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/gesture-01.gesture"); }));
    press("F1");
    ASSERT_TRUE(waitFor([&] { return stains(capture()) > 1000; }));
    press("F1");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) == 0; }))
        << "after the start of a recording, the window must show the water and no old frame";
    press("r");
    xdotool("windowsize " + window + " 200 300");
    ASSERT_TRUE(waitFor([&] { return gdk_pixbuf_get_width(shot().get()) == 200; }));
    for (int present = 0; present < 3; ++present) {
        EXPECT_TRUE(shows(plainColor)) << "the picture must stay after a new size";
    }
    press("b");
    EXPECT_TRUE(waitFor([&] { return shows(droppedColor); })) << "the key B must show the picture";
    press("w");
    for (int present = 0; present < 3; ++present) {
        EXPECT_TRUE(shows(droppedColor)) << "the picture must stay without ink";
    }
    press("b");
    EXPECT_TRUE(waitFor([&] { return shows(plainColor); })) << "the key B must show the picture";
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "dropped.png"));
    EXPECT_TRUE(waitFor([&] { return shows(droppedColor); })) << "a dropped picture must appear";
}

TEST_F(WindowTest, AReplayAPauseAndAFilmShowAMarkThatEndsThem) {
    openWindow("--no-attract --size 640x780");
    /// Returns true if the window shows the on-screen indicator at the top: a pixel in its area is darker than the
    /// background.
    const auto isMarked = [&] { return pixel(capture(), 600, 15)[0] < plainColor[0] - 40; };
    const auto click = [&] {
        pointAt(600, 15);
        xdotool("click 1");
        return waitFor([&] { return !isMarked(); });
    };
    ASSERT_FALSE(isMarked());
    write("long.gesture", "screen 64 96\nframes 100000\n0 clear\n");
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "long.gesture"));
    ASSERT_TRUE(waitFor(isMarked)) << "a replay must show an on-screen indicator";
    EXPECT_TRUE(click());
    press("space");
    ASSERT_TRUE(waitFor(isMarked));
    EXPECT_TRUE(click());
    press("f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.mp4") && isMarked(); }));
    EXPECT_TRUE(click());
    EXPECT_TRUE(waitFor([&] { return probed("shots/film-01.mp4") != ""; }));
    EXPECT_EQ(stains(shot()), 0) << "a click on an on-screen indicator must not touch the water";
}

TEST_F(WindowTest, EscapeClosesTheHelpBeforeTheWindowAndKeysWithModifiersDoNothing) {
    openWindow();
    const auto helpShows = [&] { return stains(capture()) > 1000; };
    press("F1");
    ASSERT_TRUE(waitFor(helpShows));
    const Box help = panelIn(capture());
    pointAt(help.right - 8, help.top + 7);
    xdotool("click 1");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) == 0; }))
        << "the close button must close the panel";
    press("F1");
    ASSERT_TRUE(waitFor(helpShows));
    press("ctrl+q alt+q");
    press("Escape");
    EXPECT_TRUE(waitFor([&] { return stains(capture()) == 0; }));
    press("Escape");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(WindowTest, EscapeClosesAPopUpThenTheListOfKeysThenThePanelAndThenEndsAFilm) {
    openWindow("--no-attract --size 640x780");
    pointAt(600, 700);
    press("Tab");
    Box panel;
    ASSERT_TRUE(waitFor([&] { return (panel = panelIn(capture())).right > 200; }));
    pointAt(100, 40);  // the list of presets
    xdotool("click 1");
    const auto bottom = [&] { return panelIn(capture()).bottom; };
    ASSERT_TRUE(waitFor([&] { return bottom() > panel.bottom + 40; })) << "the pop-up must be open";
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return bottom() == panel.bottom; }))
        << "Esc must close only the pop-up and not the panel";
    press("F1");
    ASSERT_TRUE(waitFor([&] { return panelIn(capture()).right > panel.right + 40; }));
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return panelIn(capture()).right == panel.right; }))
        << "Esc must close only the list of keys and not the panel";
    press("f");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/film-01.mp4"); }));
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return stains(capture()) == 0; })) << "Esc must close the panel";
    shot();
    EXPECT_EQ(probed("shots/film-01.mp4"), "") << "Esc must close only the panel";
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return probed("shots/film-01.mp4") != ""; }));
    press("Escape");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(WindowTest, EscapeEndsTheNewestFilmRecordingOrReplayAndThenQuits) {
    openWindow();
    const auto isFilming = [&](const std::string& film) { return probed(film).empty(); };
    const auto isRecording = [&](const std::string& recording) {
        return contents(recording).find("frames") == std::string::npos;
    };
    /// Starts a film or a recording with a key and waits until it has a frame.
    const auto start = [&](const std::string& key, const std::string& file) {
        press(key);
        ASSERT_TRUE(waitFor([&] { return fs::exists(folder / file); }));
        step();
    };
    start("f", "shots/film-01.mp4");
    start("r", "shots/gesture-01.gesture");
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return !isRecording("shots/gesture-01.gesture"); }));
    write("long.gesture", "screen 24 36\nframes 100000\n1 down 6 6 1\n3 move 12 15 1\n");
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "long.gesture"));
    ASSERT_TRUE(waitFor([&] { return stains(capture()) > 100; })) << "the replay must start";
    press("Escape");
    shot();
    EXPECT_TRUE(isFilming("shots/film-01.mp4")) << "Esc must end only the replay";
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return !isFilming("shots/film-01.mp4"); }));

    start("r", "shots/gesture-02.gesture");
    start("f", "shots/film-02.mp4");
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return !isFilming("shots/film-02.mp4"); }));
    EXPECT_TRUE(isRecording("shots/gesture-02.gesture")) << "Esc must end only the film";
    press("Escape");
    ASSERT_TRUE(waitFor([&] { return !isRecording("shots/gesture-02.gesture"); }));
    press("Escape");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(WindowTest, TheWindowHasTheShapeOfTheBackgroundAndFitsTheDisplay) {
    save(paint(160, 100, [](double, double) { return plainColor; }), "wide.png");
    sized = "wide.png";
    openWindow();
    const Pixbuf shown = capture();
    EXPECT_EQ(gdk_pixbuf_get_width(shown.get()), 744)
        << "the window must fit into the display, which is 800 pixels wide";
    EXPECT_NEAR(gdk_pixbuf_get_height(shown.get()), 465, 1);
    for (const int across : {800, 744}) {  // full screen without a window manager
        press("F11");
        EXPECT_TRUE(waitFor([&] { return gdk_pixbuf_get_width(shot().get()) == across; }));
        EXPECT_EQ(gdk_pixbuf_get_width(capture().get()), across);
    }
}

TEST_F(WindowTest, AWindowRestoresValidSettingsAndSizeOfTheLastWindow) {
    openWindow();
    press("n");
    const std::string settings = savedAs("shots/preset-01.json");
    xdotool("windowsize --sync " + window + " 200 300");
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    sized = "plain.png";
    preset = "";
    const auto lines = [&] {
        const std::string errors = contents("err");
        return std::ranges::count(errors, '\n') + std::ranges::count(errors, '\x1b');
    };
    openWindow();
    EXPECT_EQ(savedAs("shots/preset-02.json"), settings);
    EXPECT_EQ(gdk_pixbuf_get_width(shot().get()), 200);
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    const std::string kept = R"({"pressure": 0.375})";
    write("config/velmora/look.json", kept);
    write("red.gesture", "frames 3\n0 ink 1 0.3 0.3\n");
    openWindow("--no-attract --digest --script red.gesture");
    ASSERT_TRUE(waitFor([&] { return !contents("out").empty(); }));
    EXPECT_EQ(savedAs("shots/preset-03.json").find("0.375"), std::string::npos)
        << "a run with --digest must not use the settings of the last window";
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    EXPECT_EQ(contents("config/velmora/look.json"), kept)
        << "the ink colour that red.gesture sets must not be saved in look.json";
    write("config/velmora/look.json", "{\"\x1b[7m\": 1}");
    write("config/velmora/window-size", "9999999999x\x1b[7m");
    openWindow();
    EXPECT_EQ(lines(), 2) << contents("err");
    EXPECT_NE(savedAs("shots/preset-04.json"), settings);
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    openWindow("--no-attract --fresh");
    press("n");
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    EXPECT_EQ(lines(), 0) << contents("err");
    EXPECT_NE(contents("config/velmora/look.json").find('\x1b'), std::string::npos);
}

TEST_F(WindowTest, RecordingsReplayWithTheSameDigest) {
    // A replay is exact only if each recorded frame lasted 1/60 s. The window is therefore paused, and the test steps
    // each frame.
    openWindow();
    step();
    const std::string first = "shots/gesture-01.gesture";
    press("r");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / first); }));
    drag(60, 60, 120, 150);
    press("r");  // ends the recording
    ASSERT_TRUE(waitFor([&] { return !contents("out").empty(); }));
    press("g");
    ASSERT_TRUE(waitFor([&] { return std::ranges::count(contents("out"), '\n') == 2; }));
    drag(150, 300, 60, 200);
    const std::string second = "shots/gesture-02.gesture";
    press("r");  // in a session that has already played other gestures
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / second); }));
    shot();
    drag(60, 200, 200, 80);
    press("l");  // loses the context; the recording continues
    shot();
    drag(100, 100, 110, 105);
    press("q");
    ASSERT_EQ(exitCode(), 0) << contents("err");
    run("grep velocity out >digests");
    const std::string exact = replayed(first);
    EXPECT_EQ(contents("digests"), exact + exact + replayed(second));
    EXPECT_NE(contents("out").find("saved " + second), std::string::npos);
    EXPECT_NE(contents(second).find("lose-context"), std::string::npos);
}

TEST_F(WindowTest, ACrashKeepsTheRecordingInProgress) {
    openWindow("--no-attract --record kept.gesture");
    drag(60, 60, 120, 150);
    ASSERT_TRUE(
        waitFor([&] { return contents("kept.gesture").find(" up ") != std::string::npos; }));
    kill(player, SIGKILL);
    exitCode();
    EXPECT_NE(replayed("kept.gesture --frames 2"), "");
}

TEST_F(WindowTest, ASignalCompletesTheRecordingAndEndsThePlayerWithAnError) {
    openWindow("--no-attract --record kept.gesture --seconds 2");
    drag(60, 60, 120, 150);
    kill(player, SIGTERM);
    EXPECT_EQ(exitCode(), 2);
    EXPECT_NE(contents("err").find("--seconds has no effect in a window"), std::string::npos);
    EXPECT_NE(contents("err").find("interrupted; films and recordings"), std::string::npos);
    EXPECT_NE(contents("kept.gesture").find("frames "), std::string::npos);
    player = start("cd " + folder.string() + " && exec " + command +
                   " plain.png --script tap --record tap.gesture >out 2>err");
    EXPECT_EQ(exitCode(), 2);
    EXPECT_NE(contents("err").find("--script and --record exclude each other"), std::string::npos);
}

TEST_F(WindowTest, ARecordingWithoutSpaceEndsWithAnErrorAndTheWindowStays) {
    limit = "ulimit -f 1; ";
    openWindow("--no-attract --record cut.gesture");
    pointAt(60, 90);
    xdotool("mousedown 1");
    const auto ended = [&] {
        return contents("err").find("cannot write cut.gesture: file too large") !=
               std::string::npos;
    };
    for (int move = 0; move < 40 || !(move > 400 || ended()); ++move) {
        pointAt(60 + move % 100, 90);
    }
    EXPECT_TRUE(ended()) << contents("err");
    EXPECT_GT(stains(capture()), 0) << "the effect must continue after the error";
    xdotool("mouseup 1");  // otherwise the button would stay pressed for the next window
    press("q");
    EXPECT_EQ(exitCode(), 0);
    EXPECT_EQ(contents("cut.gesture").find("screen "), 0u)
        << "the recording's file must keep the events that were written";
}

TEST_F(WindowTest, ASwitchOfTheInkEndsARecordingThatReplays) {
    const auto digests = [&] { return std::ranges::count(contents("out"), '\n'); };
    openWindow();
    press("r");
    ASSERT_TRUE(waitFor([&] { return fs::exists(folder / "shots/gesture-01.gesture"); }));
    press("w");
    EXPECT_TRUE(waitFor([&] { return digests() == 1; }))
        << "the end of the recording must print its digest";
    press("g");
    EXPECT_TRUE(waitFor([&] { return digests() == 2; })) << "the key G must replay the recording";
    press("q");
    EXPECT_EQ(exitCode(), 0) << contents("err");
    EXPECT_NE(contents("out").find("saved shots/gesture-01.gesture"), std::string::npos);

    openWindow("--no-attract --record kept.gesture");
    fs::remove(folder / "kept.gesture");
    fs::create_directory(folder / "kept.gesture");  // this folder prevents the final write
    press("w");
    EXPECT_TRUE(waitFor([&] {
        return contents("err").find("cannot write kept.gesture: is a directory") !=
               std::string::npos;
    })) << contents("err");
    shot();
    press("q");
    EXPECT_EQ(exitCode(), 0) << "the window must stay open after the error";
}

TEST_F(WindowTest, AFilmWithoutSpaceStaysOnlyIfItPlays) {
    const struct {
        std::string limit;  // maximum size of a file, in blocks of 512 bytes
        bool stays;
    } cases[] = {{"1", false}, {"200", true}};
    for (const auto& [blocks, stays] : cases) {
        limit = "ulimit -f " + blocks + "; ";
        openWindow("--no-attract --format gif");
        press("f");
        pointAt(60, 90);
        xdotool("mousedown 1");
        const auto error = [&] { return contents("err"); };
        for (int move = 0; move < 2000 && error().empty(); ++move) {
            pointAt(60 + 7 * move % 120, 90 + 5 * move % 200);
        }
        xdotool("mouseup 1");  // otherwise the button would stay pressed for the next window
        EXPECT_NE(error().find("cannot write shots/film-01.gif: file too large"), std::string::npos)
            << error();
        EXPECT_EQ(error().find("The file contains the film up to this error") != std::string::npos,
                  stays);
        EXPECT_EQ(fs::exists(folder / "shots/film-01.gif"), stays);
        EXPECT_EQ(!probed("shots/film-01.gif").empty(), stays);
        press("q");
        EXPECT_EQ(exitCode(), 0);
    }
}

TEST_F(WindowTest, HandlesANewSizeADroppedImageAndANewContext) {
    openWindow();
    xdotool("windowsize " + window + " 200 300");
    pointAt(100, 150);
    Pixbuf small;
    ASSERT_TRUE(waitFor([&] { return gdk_pixbuf_get_width((small = shot()).get()) == 200; }));
    EXPECT_EQ(gdk_pixbuf_get_height(small.get()), 300);
    EXPECT_LE(difference(pixel(small, 100, 150), plainColor), 6);

    const auto shows = [&](const Rgb& color) {
        return difference(pixel(shot(), 100, 150), color) <= 6;
    };
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "dropped.png"));
    EXPECT_TRUE(waitFor([&] { return shows(droppedColor); }));
    ASSERT_TRUE(dropFile(std::stoul(window), folder / "out"));
    ASSERT_TRUE(waitFor([&] {
        return contents("err").find("not a readable image, ") != std::string::npos;
    })) << "the window must report the error and stay open";

    press("l");
    EXPECT_TRUE(shows(droppedColor));
    drag(60, 150, 140, 150);
    EXPECT_FALSE(shows(droppedColor)) << "after the context loss, a drag must leave ink";
    press("Escape");
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(WindowTest, ReportsInOneLineWhyTheWindowCannotOpen) {
    write("taken.gesture", "mine");
    const struct {
        std::string variables;
        std::string arguments;
        std::string expected;
    } cases[] = {
        {"DISPLAY=:9999", "", "cannot open a window"},
        {"SDL_VIDEODRIVER=dummy", "", "cannot open a window with OpenGL ES 2.0"},
        {"", "--record taken.gesture", "would overwrite"},
        {"", "--record /nowhere/a.gesture", "cannot write /nowhere/a.gesture: no such file"},
        {"", "--preset /nowhere.json", "no such preset"},
        {"", "--script taken.gesture", "taken.gesture:1: expected"},
    };
    for (const auto& [variables, arguments, expected] : cases) {
        SCOPED_TRACE(variables + arguments);
        EXPECT_EQ(
            run(variables + " timeout 60 " + command + " " + sized + " " + arguments + " 2>err"),
            2);
        const std::string line = contents("err");
        EXPECT_NE(line.find(expected), std::string::npos) << line;
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    }
    EXPECT_EQ(contents("taken.gesture"), "mine");
}

}  // namespace
