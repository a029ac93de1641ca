#include "player/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

#include "player/failure.h"
#include "player/help_text.h"

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
                          std::to_string(largestSide) + " pixels, not " + inQuotes(given));
    }
}

/// What the options mean stands in the help text.
void declare(CLI::App& app, Options& options) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("picture", options.picture);
    app.add_option("--second", options.second);
    app.add_option("--script", options.script);
    app.add_option("--frames", options.frames)->check(CLI::Range(1, mostFrames));
    app.add_option_function<std::string>(
        "--size", [&options](const std::string& given) { readSize(given, options); });
    app.add_flag("--water-only", options.waterOnly);
    app.add_option("--out", options.out);
    app.add_option("--format", options.format)->check(CLI::IsMember({"mp4", "webm", "gif"}));
    app.add_flag("--digest", options.digest);
    app.add_flag("--headless", options.headless);
    app.add_option("--preset", options.preset);
    app.add_option("--record", options.record);
    app.add_option("--shots", options.shots);
    app.add_option_function<std::string>(
           "--overlay",
           [&options](const std::string& given) {
               options.overlays = {given == "velocity", given == "ink"};
           })
        ->check(CLI::IsMember({"velocity", "ink"}));
    app.add_flag("--no-attract", options.noAttract);
    app.set_version_flag("--version", "velmora " VELMORA_VERSION);
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    Options options;
    options.script = VELMORA_GESTURES "/showcase.gesture";
    CLI::App app("", "velmora-player");
    declare(app, options);
    try {
        app.parse(argc, argv);
        options.scriptGiven = app.count("--script") > 0;
        options.outGiven = app.count("--out") > 0;
        options.sizeGiven = app.count("--size") > 0;
    } catch (const CLI::CallForHelp&) {
        std::fputs(helpText, stdout);
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        std::printf("%s\n", version.what());
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        throw Failure(error.what());
    }
    return options;
}

}  // namespace player
