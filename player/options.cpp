#include "player/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <system_error>
#include <vector>

#include "app/size.h"
#include "app/text.h"
#include "desktop/failure.h"
#include "desktop/files.h"
#include "player/closest_name.h"
#include "player/help_text.h"
#include "player/size.h"
#include "velmora/version.h"

namespace player {

using desktop::Failure;

namespace {

namespace fs = std::filesystem;

constexpr int maxFrames = 1'000'000;

Failure mustBe(const std::string& option, const std::string& expected, const std::string& given) {
    return Failure(option + " must be " + expected + ", not " + app::inQuotes(given));
}

void readSize(const std::string& given, Options& options) {
    const std::optional<app::Size> size = parseSize(given);
    if (!size) {
        throw mustBe("--size",
                     "WIDTHxHEIGHT with sides from " + std::to_string(minSide) + " to " +
                         std::to_string(maxSide) + " pixels",
                     given);
    }
    options.width = size->width;
    options.height = size->height;
}

/// Returns the number that the user gave for an option. `expected` describes the valid numbers, for the error message.
template <class Number>
Number readNumber(const std::string& option, const std::string& given, Number min, Number max,
                  const std::string& expected) {
    Number number{};
    const char* end = given.data() + given.size();
    const auto [rest, error] = std::from_chars(given.data(), end, number);
    if (error != std::errc{} || rest != end || !(number >= min && number <= max)) {
        throw mustBe(option, expected, given);
    }
    return number;
}

void readFormat(const std::string& given, Options& options) {
    if (given != "mp4" && given != "webm" && given != "gif") {
        throw mustBe("--format", "mp4, webm or gif", given);
    }
    options.format = given;
}

void readOverlay(const std::string& given, Options& options) {
    options.overlays = {given == "velocity", given == "ink"};
    if (!options.overlays.velocity && !options.overlays.ink) {
        throw mustBe("--overlay", "velocity or ink", given);
    }
}

/// Declares the options. help.txt describes them.
void declare(CLI::App& app, Options& options) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.add_option("image", options.image);
    app.add_option("--second", options.second);
    app.add_option("--script", options.script);
    const auto read = [&app](const std::string& name, auto reader) {
        app.add_option_function<std::string>(name, reader);
    };
    read("--frames", [&options](const std::string& given) {
        options.frames = readNumber("--frames", given, 1, maxFrames, "a number from 1 to 1000000");
    });
    read("--seconds", [&options](const std::string& given) {
        options.seconds = readNumber("--seconds", given, 0.1, 3600.0, "a number from 0.1 to 3600");
    });
    read("--fps", [&options](const std::string& given) {
        options.framesPerSecond = readNumber("--fps", given, 1, 60, "a whole number from 1 to 60");
    });
    read("--letters", [&options](const std::string& given) {
        options.fontScale = readNumber("--letters", given, 0.5, 8.0, "a number from 0.5 to 8");
    });
    read("--size", [&options](const std::string& given) { readSize(given, options); });
    read("--format", [&options](const std::string& given) { readFormat(given, options); });
    read("--overlay", [&options](const std::string& given) { readOverlay(given, options); });
    app.add_flag("--water-only", options.waterOnly);
    app.add_option("--out", options.out);
    app.add_flag("--digest", options.digest);
    app.add_flag("--headless", options.headless);
    app.add_option("--preset", options.preset);
    app.add_option("--record", options.record);
    app.add_option("--shots", options.shots);
    app.add_flag("--no-attract", options.noAttract);
    app.add_flag("--fresh", options.fresh);
    app.set_version_flag("--version", "velmora " VELMORA_VERSION);
}

/// Throws Failure if a value is empty. Warns about options that are given more than once.
void checkValues(const CLI::App& app) {
    for (const CLI::Option* option : app.get_options()) {
        const std::vector<std::string>& values = option->results();
        const std::string name = option->get_name() == "image" ? "IMAGE" : option->get_name();
        if (std::ranges::find(values, "") != values.end()) {
            throw Failure(name + " must not be empty; leave it out for the default");
        }
        if (values.size() > 1 && option->get_items_expected() > 0) {
            desktop::warn(name + " is given more than once, so the last one counts", values.back());
        }
    }
}

/// Returns the failure for unknown arguments.
Failure unexpected(const CLI::App& app, const std::vector<std::string>& arguments) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    std::string list;
    for (const std::string& argument : arguments) {
        list += (list.empty() ? "" : ", ") + app::inQuotes(argument);
    }
    return Failure("unknown argument " + list + suggestion(arguments.front(), names) +
                   (arguments.front().starts_with('-') ? "" : "; there can be one IMAGE"));
}

/// If `file` is the name of a file in the folder `shipped` or `own`, replaces the name by the path of this file. Does
/// not change a path. Throws Failure if the name has no folder and no extension, and no such file exists.
void resolveName(fs::path& file, const fs::path& shipped, const fs::path& own,
                 const std::string& extension, const std::string& kind) {
    std::error_code ignored;
    if (file.empty() || file.has_extension() || file.has_parent_path() || desktop::isFile(file)) {
        return;
    }
    std::vector<std::string> names;
    for (const fs::path& folder : {shipped, own}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
            if (entry.path().extension() == extension) {
                names.push_back(entry.path().stem().string());
                if (names.back() == file) {
                    file = entry.path();
                    return;
                }
            }
        }
    }
    std::ranges::sort(names);
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    const std::string closest = suggestion(file.string(), names);
    throw Failure("there is no " + kind + " " + app::inQuotes(file.string()) +
                  (closest.empty() ? "." : closest) + " Choose a file, or one of " + list);
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    Options options;
    options.script = VELMORA_GESTURES "/showcase.gesture";
    CLI::App app("", "velmora-player");
    declare(app, options);
    try {
        app.parse(argc, argv);
        checkValues(app);
        resolveName(options.preset, VELMORA_PRESETS, options.shots, ".json", "preset");
        resolveName(options.script, VELMORA_GESTURES, options.shots, ".gesture", "gesture script");
        if (options.frames > 0 && options.seconds > 0.0) {
            throw Failure("--frames and --seconds exclude each other; leave one of them out");
        }
        options.scriptGiven = app.count("--script") > 0;
        options.outGiven = app.count("--out") > 0;
        options.sizeGiven = app.count("--size") > 0;
    } catch (const CLI::CallForHelp&) {
        std::fputs(helpText, stdout);
        return std::nullopt;
    } catch (const CLI::CallForVersion& version) {
        std::printf("%s\n", version.what());
        return std::nullopt;
    } catch (const CLI::ExtrasError&) {
        throw unexpected(app, app.remaining());
    } catch (const CLI::ParseError& error) {
        throw Failure(error.what());
    }
    return options;
}

}  // namespace player
