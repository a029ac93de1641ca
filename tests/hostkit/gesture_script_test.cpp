#include "hostkit/gesture_script.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <utility>

#include "hostkit/host_error.h"

namespace hostkit {
namespace {

constexpr const char* everyKind =
    "screen 720 1280\n"
    "frames 77\n"
    "0 ink 0.1 1 0.30000004\n"
    "2 down -3.25 1279.1 0.6\n"
    "2 move 1e-05 640 0\n"
    "4 cancel 10 20 1\n"
    "4 up 10 20 1\n"
    "9 second on\n"
    "9 second off\n"
    "11 clear\n"
    "12 lose-context\n";

std::string errorOf(const std::string& text) {
    try {
        parseGestureScript(text, "a.gesture");
    } catch (const HostError& error) {
        return error.what();
    }
    return "no error";
}

TEST(GestureScript, ReadsEveryTypeOfLineAndWritesTheSameText) {
    const GestureScript script = parseGestureScript(everyKind, "a.gesture");
    EXPECT_EQ(writeGestureScript(script), everyKind);
    EXPECT_EQ(script.frames, 77);
    ASSERT_EQ(script.events.size(), 9u);
    EXPECT_EQ(script.events[1], (ScriptEvent{2, Touch{TouchAction::down, -3.25, 1279.1, 0.6f}}));
    EXPECT_EQ(script.events[0], (ScriptEvent{0, InkColor{0.1f, 1.0f, 0.30000004f}}));
    EXPECT_EQ(std::get<Touch>(script.events[3].action).action, TouchAction::cancel);
    EXPECT_EQ(eventsOfFrame(script, 4).size(), 2u);
    EXPECT_EQ(eventsOfFrame(script, 4).data(), &script.events[3]);
    EXPECT_TRUE(eventsOfFrame(script, 5).empty());
}

TEST(GestureScript, SkipsCommentsAndBlanksAndHasDefaults) {
    const GestureScript script =
        parseGestureScript("# a tap\r\n\n  7\tdown 1 2 1 # here\r\n\n9 up 1 2 1", "a.gesture");
    EXPECT_EQ(script.screenWidth, 1080);
    EXPECT_EQ(script.screenHeight, 1920);
    EXPECT_EQ(script.frames, 69);
    EXPECT_EQ(script.events.size(), 2u);
    EXPECT_EQ(parseGestureScript("", "a.gesture").frames, 60);
}

TEST(GestureScript, ScalesPositionsAlongEachAxis) {
    const GestureScript half =
        scaledToScreen(parseGestureScript(everyKind, "a.gesture"), 360, 2560);
    EXPECT_EQ(half.events[1], (ScriptEvent{2, Touch{TouchAction::down, -1.625, 2558.2, 0.6f}}));
    EXPECT_EQ(half.screenWidth, 360);
}

TEST(GestureScript, ErrorsNameFileLineAndExpectedWord) {
    const std::pair<const char*, const char*> cases[] = {
        {"0 tap 1 2 1",
         "a.gesture:1: expected down, move, up, cancel, ink, second, clear or "
         "lose-context, found \"tap\""},
        {"# c\n0 down 1 2",
         "a.gesture:2: expected a pressure of 0 or more, found the end of the line"},
        {"0 down 1 2 -1", "a.gesture:1: expected a pressure of 0 or more, found \"-1\""},
        {"0 down 1 y2 1", "a.gesture:1: expected y in pixels, found \"y2\""},
        {"0 down nan 2 1", "a.gesture:1: expected x in pixels, found \"nan\""},
        {"0 down 1 2 1 3", "a.gesture:1: expected the end of the line, found \"3\""},
        {"5 clear\n4 clear", "a.gesture:2: expected a frame number, 5 or later, found \"4\""},
        {"1.5 clear", "a.gesture:1: expected a frame number, 0 or later, found \"1.5\""},
        {"99999999999 clear",
         "a.gesture:1: expected a frame number, 0 or later, found \"99999999999\""},
        {"0 ink 0 2 0", "a.gesture:1: expected green from 0 to 1, found \"2\""},
        {"0 second maybe", "a.gesture:1: expected on or off, found \"maybe\""},
        {"screen 0 5", "a.gesture:1: expected a width in pixels, found \"0\""},
        {"frames 0", "a.gesture:1: expected a number of frames, at least 1, found \"0\""},
        {"0 clear\nframes 9",
         "a.gesture:2: expected an event (headers must come before the first event), found "
         "\"frames\""}};
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(errorOf(text), error);
    }
    EXPECT_THROW(loadGestureScript("/nonexistent/a.gesture"), HostError);
    EXPECT_THROW(loadGestureScript("/"), HostError);
}

TEST(GestureScript, TheBundledScriptsAreValid) {
    int scripts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(GESTURES)) {
        const GestureScript script = loadGestureScript(entry.path());
        EXPECT_EQ(parseGestureScript(writeGestureScript(script), "again"), script) << entry.path();
        ASSERT_FALSE(script.events.empty()) << entry.path();
        EXPECT_GT(script.frames, script.events.back().frame) << entry.path();
        ++scripts;
    }
    EXPECT_GE(scripts, 9);
}

}  // namespace
}  // namespace hostkit
