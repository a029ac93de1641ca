#include "bench/options.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <iostream>
#include <system_error>

namespace bench {

namespace {

/// Converts a text to a count. Returns false if the text is not a whole number of at least 1.
bool parseCount(std::string_view text, int& count) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, count);
    return error == std::errc() && stop == end && count >= 1;
}

}  // namespace

std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount) {
    constexpr std::string_view historyOption = "--history=";
    Options options{false, false, defaultCount, {}};
    bool valid = true;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--sweep") {
            options.sweep = true;
        } else if (argument == "--table") {
            options.table = true;
        } else if (argument.starts_with(historyOption)) {
            options.history = argument.substr(historyOption.size());
            valid = valid && !options.history.empty();
        } else if (argument.starts_with(countOption)) {
            valid = valid && parseCount(argument.substr(countOption.size()), options.count);
        } else {
            argv[kept++] = argv[i];
        }
    }
    benchmark::Initialize(&kept, argv);
    if (!valid || benchmark::ReportUnrecognizedArguments(kept, argv)) {
        std::cerr << "usage: " << program << " [--sweep | --table | --history=FILE] ["
                  << countOption << "N] [--benchmark_...]\n";
        return std::nullopt;
    }
    return options;
}

}  // namespace bench
