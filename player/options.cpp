#include "player/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

#include "player/failure.h"
#include "player/window/keys.h"

namespace player {
namespace {

// A smaller screen has no solver cell, which takes 12 pixels; a larger one exceeds the usual limits
// of GL.
constexpr int smallestSide = 16;
constexpr int largestSide = 4096;
constexpr int mostFrames = 1'000'000;

/// Reads a whole number from the head of `text` and takes it off.
bool takeNumber(std::string_view& text, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc{};
}

bool isSide(int side) {
    return side >= smallestSide && side <= largestSide;
}

void readSize(const std::string& given, Options& options) {
    std::string_view rest = given;
    const bool width = takeNumber(rest, options.width);
    const bool cross = !rest.empty() && rest.front() == 'x';
    rest.remove_prefix(cross ? 1 : 0);
    const bool height = takeNumber(rest, options.height);
    if (!width || !cross || !height || !rest.empty() || !isSide(options.width) ||
        !isSide(options.height)) {
        throw CLI::ValidationError(
            "--size", "expected WIDTHxHEIGHT, each from " + std::to_string(smallestSide) + " to " +
                          std::to_string(largestSide) + " pixels, not '" + given + "'");
    }
}

void describe(CLI::App& app, Options& options) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("picture", options.picture, "The picture under the water (PNG, JPEG or WebP)")
        ->type_name("FILE");
    app.add_option("--second", options.second, "The second background, which a script may show")
        ->type_name("FILE");
    app.add_option("--script", options.script,
                   "The gesture script to play; a window plays none unless named")
        ->type_name("FILE");
    app.add_option("--frames", options.frames, "How many frames to draw")
        ->check(CLI::Range(1, mostFrames));
    app.add_option_function<std::string>(
           "--size", [&options](const std::string& given) { readSize(given, options); },
           "The screen in pixels")
        ->type_name("WxH");
    app.add_flag("--water-only", options.waterOnly, "Water without ink");
    app.add_option("--out", options.out, "The folder for the results")
        ->type_name("FOLDER")
        ->capture_default_str();
    app.add_flag("--digest", options.digest, "Print digests of the water and of the velocity");
    app.add_flag("--headless", options.headless,
                 "Film without a window, as without a desktop and with --out");
    app.add_option("--preset", options.preset, "The settings to start with (JSON)")
        ->type_name("FILE");
    app.add_option("--record", options.record,
                   "Write what the finger in the window does as a script")
        ->type_name("FILE");
    app.add_option("--shots", options.shots,
                   "The folder for the window's screenshots, films, recordings and presets")
        ->type_name("FOLDER")
        ->capture_default_str();
    app.add_option_function<std::string>(
           "--overlay",
           [&options](const std::string& given) {
               options.overlays = {given == "velocity", given == "ink"};
           },
           "What to show over the picture: the velocity field or the ink's density")
        ->check(CLI::IsMember({"velocity", "ink"}))
        ->type_name("velocity|ink");
    app.add_flag("--no-attract", options.noAttract, "No finger of its own in an idle window");
    app.footer("Keys of the window:\n" + keyHelp());
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    Options options;
    options.picture = "/usr/share/backgrounds/mate/nature/Dune.jpg";
    options.second = "/usr/share/backgrounds/mate/nature/RainDrops.jpg";
    options.script = VELMORA_GESTURES "/showcase.gesture";
    CLI::App app("A picture under water and a finger: in a window on a desktop, else as a film",
                 "velmora-player");
    describe(app, options);
    try {
        app.parse(argc, argv);
        options.scriptGiven = app.count("--script") > 0;
        options.outGiven = app.count("--out") > 0;
        options.sizeGiven = app.count("--size") > 0;
    } catch (const CLI::CallForHelp&) {
        std::fputs(app.help().c_str(), stdout);
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw Failure(error.what());
    }
    return options;
}

}  // namespace player
