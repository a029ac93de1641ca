#include "hostkit/gesture_script.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <ios>
#include <iterator>
#include <optional>
#include <system_error>

#include "hostkit/host_error.h"
#include "hostkit/number_text.h"

namespace hostkit {

namespace {

constexpr std::array<const char*, 4> actionNames = {"down", "up", "move", "cancel"};
constexpr int framesAfterLastEvent = 60;
/// Maximum of sizes, positions and frame numbers in a script. It is far larger than any screen, and so small that no
/// computation with such a number overflows.
constexpr int maxNumber = 1'000'000;
constexpr float maxPressure = 1e6f;
/// Maximum number of bytes of an invalid word that an error message quotes.
constexpr std::size_t maxQuotedLength = 40;

/// Reads the words of one line from left to right. Holds the file name and the line number for error messages.
struct LineReader {
    const std::string& fileName;
    int number;
    std::string_view rest;

    [[noreturn]] void fail(const std::string& expected, std::string_view found) const {
        const std::string shown(found.substr(0, maxQuotedLength));
        throw HostError(
            fileName + ":" + std::to_string(number) + ": expected " + expected +
            (found.empty() ? ", found the end of the line" : ", found \"" + shown + "\""));
    }

    std::string_view word() {
        constexpr std::string_view blanks = " \t\r";
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
        const std::string_view found = rest.substr(0, rest.find_first_of(blanks));
        rest.remove_prefix(found.size());
        return found;
    }

    template <class Number>
    Number numberBetween(Number min, Number max, const std::string& expected) {
        const std::string_view found = word();
        Number value{};
        const auto [end, error] = readNumber(found.data(), found.data() + found.size(), value);
        if (error != std::errc{} || end != found.data() + found.size() ||
            !(value >= min && value <= max)) {
            fail(expected, found);
        }
        return value;
    }

    double position(const char* axis) {
        return numberBetween<double>(-maxNumber, maxNumber, std::string(axis) + " in pixels");
    }

    float colorChannel(const char* name) {
        return numberBetween(0.0f, 1.0f, std::string(name) + " from 0 to 1");
    }

    void end() {
        if (const std::string_view found = word(); !found.empty()) {
            fail("the end of the line", found);
        }
    }
};

std::optional<TouchAction> touchActionOf(std::string_view word) {
    const auto found = std::find(actionNames.begin(), actionNames.end(), word);
    if (found == actionNames.end()) {
        return std::nullopt;
    }
    return static_cast<TouchAction>(found - actionNames.begin());
}

bool onOrOff(LineReader& line) {
    const std::string_view found = line.word();
    if (found != "on" && found != "off") {
        line.fail("on or off", found);
    }
    return found == "on";
}

/// Parses the words after the frame number. The initializers in braces read the words in line order, because C++
/// evaluates such initializers from left to right.
ScriptAction parseAction(LineReader& line) {
    const std::string_view name = line.word();
    if (const auto action = touchActionOf(name)) {
        return Touch{*action, line.position("x"), line.position("y"),
                     line.numberBetween(0.0f, maxPressure, "a pressure of 0 or more")};
    }
    if (name == "ink") {
        return InkColor{line.colorChannel("red"), line.colorChannel("green"),
                        line.colorChannel("blue")};
    }
    if (name == "second") {
        return SecondBackground{onOrOff(line)};
    }
    if (name == "clear") {
        return ClearInk{};
    }
    if (name == "lose-context") {
        return LoseContext{};
    }
    line.fail("down, move, up, cancel, ink, second, clear or lose-context", name);
}

/// Parses a header line, which sets the screen size or the number of frames. Returns false if the line is not a header.
bool parseHeader(LineReader& line, GestureScript& script, bool& framesGiven) {
    LineReader header = line;
    const std::string_view name = header.word();
    if (name == "screen") {
        script.screenWidth = header.numberBetween(1, maxNumber, "a width in pixels");
        script.screenHeight = header.numberBetween(1, maxNumber, "a height in pixels");
    } else if (name == "frames") {
        script.frames = header.numberBetween(1, maxNumber, "a number of frames, at least 1");
        framesGiven = true;
    } else {
        return false;
    }
    if (!script.events.empty()) {
        line.fail("an event (headers must come before the first event)", name);
    }
    header.end();
    return true;
}

void parseEvent(LineReader& line, GestureScript& script) {
    const int earliest = script.events.empty() ? 0 : script.events.back().frame;
    const int frame = line.numberBetween(
        earliest, maxNumber, "a frame number, " + std::to_string(earliest) + " or later");
    script.events.push_back({frame, parseAction(line)});
    line.end();
}

/// Appends numbers to a text, with a space before each.
template <class... Numbers>
void append(std::string& text, Numbers... numbers) {
    const auto appendNumber = [&](auto value) {
        char digits[64];
        const auto end = writeNumber(digits, std::end(digits), value).ptr;
        text.append(1, ' ').append(digits, end);
    };
    (appendNumber(numbers), ...);
}

struct ActionWriter {
    std::string& text;

    void operator()(const Touch& touch) const {
        text.append(" ").append(actionNames[static_cast<std::size_t>(touch.action)]);
        append(text, touch.x, touch.y, touch.pressure);
    }
    void operator()(const InkColor& ink) const {
        append(text += " ink", ink.red, ink.green, ink.blue);
    }
    void operator()(const SecondBackground& second) const {
        text += second.on ? " second on" : " second off";
    }
    void operator()(const ClearInk&) const { text += " clear"; }
    void operator()(const LoseContext&) const { text += " lose-context"; }
};

}  // namespace

GestureScript parseGestureScript(std::string_view text, const std::string& fileName) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    GestureScript script;
    bool framesGiven = false;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view lineText = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(lineText.size() + 1, text.size()));
        LineReader line{fileName, number, lineText.substr(0, lineText.find('#'))};
        if (LineReader(line).word().empty() || parseHeader(line, script, framesGiven)) {
            continue;
        }
        parseEvent(line, script);
    }
    if (!framesGiven) {
        const int last = script.events.empty() ? 0 : script.events.back().frame;
        script.frames = last + framesAfterLastEvent;
    }
    return script;
}

std::string writeScriptEvent(const ScriptEvent& event) {
    std::string text = std::to_string(event.frame);
    std::visit(ActionWriter{text}, event.action);
    return text;
}

std::string writeGestureScript(const GestureScript& script) {
    std::string text = "screen";
    append(text, script.screenWidth, script.screenHeight);
    append(text += "\nframes", script.frames);
    text += '\n';
    for (const ScriptEvent& event : script.events) {
        text.append(writeScriptEvent(event)).append(1, '\n');
    }
    return text;
}

GestureScript loadGestureScript(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::error_code ignored;
    if (!stream.is_open() || std::filesystem::is_directory(file, ignored)) {
        throw HostError(file.string() +
                        ": cannot read the gesture script; check the path and the permissions");
    }
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    return parseGestureScript(text, file.string());
}

std::span<const ScriptEvent> eventsOfFrame(const GestureScript& script, int frame) {
    const std::span<const ScriptEvent> all = script.events;
    const auto countBefore = [&](int bound) {
        const auto found = std::partition_point(
            all.begin(), all.end(), [&](const ScriptEvent& event) { return event.frame < bound; });
        return static_cast<std::size_t>(found - all.begin());
    };
    return all.subspan(countBefore(frame), countBefore(frame + 1) - countBefore(frame));
}

GestureScript scaledToScreen(GestureScript script, int width, int height) {
    const double scaleX = static_cast<double>(width) / script.screenWidth;
    const double scaleY = static_cast<double>(height) / script.screenHeight;
    for (ScriptEvent& event : script.events) {
        if (Touch* touch = std::get_if<Touch>(&event.action)) {
            touch->x *= scaleX;
            touch->y *= scaleY;
        }
    }
    script.screenWidth = width;
    script.screenHeight = height;
    return script;
}

}  // namespace hostkit
