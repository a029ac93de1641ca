#include "player/options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <string>
#include <system_error>

#include "app/size.h"
#include "app/text.h"
#include "desktop/failure.h"
#include "player/help_text.h"
#include "player/size.h"
#include "velmora/version.h"

namespace player {

using desktop::Failure;

namespace {

constexpr int maxFrames = 1'000'000;

void readSize(const std::string& given, Options& options) {
    const std::optional<app::Size> size = parseSize(given);
    if (!size) {
        throw CLI::ValidationError(
            "--size", "expected WIDTHxHEIGHT, each from " + std::to_string(minSide) + " to " +
                          std::to_string(maxSide) + " pixels, not " + app::inQuotes(given));
    }
    options.width = size->width;
    options.height = size->height;
}

void readFontScale(const std::string& given, Options& options) {
    const char* end = given.data() + given.size();
    const auto [rest, error] = std::from_chars(given.data(), end, options.fontScale);
    if (error != std::errc{} || rest != end ||
        !(options.fontScale >= 0.5 && options.fontScale <= 8.0)) {
        throw CLI::ValidationError("--letters",
                                   "expected a number from 0.5 to 8, not " + app::inQuotes(given));
    }
}

/// Declares the options. help.txt describes them.
void declare(CLI::App& app, Options& options) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("image", options.image);
    app.add_option("--second", options.second);
    app.add_option("--script", options.script);
    app.add_option("--frames", options.frames)->check(CLI::Range(1, maxFrames));
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
    app.add_flag("--fresh", options.fresh);
    app.add_option_function<std::string>(
        "--letters", [&options](const std::string& given) { readFontScale(given, options); });
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
