#include "screensaver/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/presets.h"
#include "app/text.h"
#include "desktop/failure.h"
#include "velmora/version.h"

namespace saver {
namespace {

constexpr const char* description =
    "Shows a picture under water, as a screen saver for XScreenSaver.\n"
    "Options may have one dash or two.\n"
    "If no window option is given, it draws into the window of XSCREENSAVER_WINDOW.\n"
    "If this variable is not set, it opens a window.";

/// Returns the arguments in reverse order, as CLI11 expects them. XScreenSaver's programs accept long options with one
/// dash, such as -window-id. CLI11 requires two dashes, so a second dash is added.
std::vector<std::string> withTwoDashes(int argc, const char* const* argv) {
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    for (std::string& argument : arguments) {
        const bool isLong = argument.size() > 2 && argument[0] == '-' &&
                            std::isalpha(static_cast<unsigned char>(argument[1])) != 0;
        argument.insert(0, isLong ? "-" : "");
    }
    std::ranges::reverse(arguments);
    return arguments;
}

/// Largest identifier that X transmits.
constexpr unsigned long maxWindow = 0xFFFFFFFF;

/// Returns the window that `text` identifies, for example 0x1a00003 or 27262979. `source` is the option or the variable
/// that contains the text; an error message names it.
Target givenWindow(const std::string& source, const std::string& text) {
    char* end = nullptr;
    const unsigned long window = std::strtoul(text.c_str(), &end, 0);
    const bool isNumber = std::isdigit(static_cast<unsigned char>(text[0])) != 0 && *end == '\0';
    if (!isNumber || window == 0 || window > maxWindow) {
        throw desktop::Failure(source + " must be the number of a window, such as 0x1a00003, not " +
                               app::inQuotes(text));
    }
    return {Target::Kind::givenWindow, window};
}

/// Returns a check that a number is in the range of a setting.
CLI::Range rangeOf(float app::Settings::*setting) {
    const auto* field =
        std::ranges::find(app::numberFields, setting, &app::SettingField<float>::member);
    CLI::Range range(app::shortestNumber(field->min), app::shortestNumber(field->max));
    range.description("");  // the text of the option names the range
    return range;
}

/// Returns an error message for NaN. A check of the range would accept NaN.
std::string refuseNan(const std::string& text) {
    return std::isnan(std::strtod(text.c_str(), nullptr)) ? "expected a number, not " + text : "";
}

/// Options that select the window. `id` has priority over `own`, and `own` over `root`.
struct WindowOptions {
    bool root = false;
    bool own = false;
    std::string id;
};

Target targetOf(const WindowOptions& chosen) {
    const char* named = std::getenv("XSCREENSAVER_WINDOW");
    if (!chosen.id.empty()) {
        return givenWindow("--window-id", chosen.id);
    }
    if (chosen.own) {
        return {};
    }
    if (named != nullptr && *named != '\0') {
        return givenWindow("XSCREENSAVER_WINDOW", named);
    }
    return {chosen.root ? Target::Kind::rootWindow : Target::Kind::ownWindow};
}

void declare(CLI::App& app, Options& options, WindowOptions& window) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.get_formatter()->column_width(31);
    app.add_option("--window-id", window.id, "Draws into this window, for example 0x1a00003.");
    app.add_flag("--window", window.own, "Opens a window.");
    app.add_flag("--root", window.root,
                 "Draws into the window of XSCREENSAVER_WINDOW, else on the root window.");
    app.add_option("--picture", options.picture,
                   "Shows a picture, or a folder of PNG, JPEG, WebP or GIF pictures.\n"
                   "Default: the desktop or a picture, as XScreenSaver's settings say.")
        ->type_name("PATH");
    app.add_option("--preset", options.preset,
                   "Uses a shipped preset, for example calm_pond, or a preset file.\n"
                   "The value random chooses another shipped preset for each picture.");
    app.add_option("--duration", options.duration,
                   "Shows each picture and each random preset for this many seconds,\nfrom 1 to "
                   "86400. Default: 60")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 86400).description(""));
    app.add_option("--rain", options.rain,
                   "Sets the raindrops per second, from 0 to 40.\nDefault: as in the preset")
        ->type_name("NUMBER")
        ->check(refuseNan)
        ->check(rangeOf(&app::Settings::rain));
    app.add_option("--speed", options.speed,
                   "Sets the speed of the water, from 0.05 to 2; 1 is real time.\nDefault: as in "
                   "the preset")
        ->type_name("NUMBER")
        ->check(refuseNan)
        ->check(rangeOf(&app::Settings::timeScale));
    app.add_flag("--ink,!--no-ink", options.ink,
                 "Shows strokes of ink, or only water. By default, ink is shown.");
    app.add_option("--script", options.script, "Plays this gesture script at the start.")
        ->type_name("FILE");
    app.set_version_flag("--version", "velmora " VELMORA_VERSION);
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    Options options;
    WindowOptions window;
    CLI::App app(description, "velmora-screensaver");
    declare(app, options, window);
    try {
        app.parse(withTwoDashes(argc, argv));
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        std::printf("%s\n", version.what());
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw desktop::Failure(error.what());
    }
    options.target = targetOf(window);
    return options;
}

app::Settings withOptions(app::Settings settings, const Options& options) {
    settings.rain = options.rain.value_or(settings.rain);
    settings.timeScale = options.speed.value_or(settings.timeScale);
    settings.waterOnly = settings.waterOnly || !options.ink;
    settings.secondBackground = false;
    return settings;
}

}  // namespace saver
