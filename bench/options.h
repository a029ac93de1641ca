#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bench {

struct Options {
    bool sweep;  // print cost by size, in the columns that tools/draw-speed reads
    bool table;  // print Markdown tables instead of Google Benchmark's output
    int count;   // samples per benchmark
    /// Path of the CSV file to which the benchmark appends a row of ratios. If empty, no row is appended.
    std::string history;
};

/// Reads the options --sweep, --table, --history=FILE, and `countOption` followed by a number. An example of
/// `countOption` is "--pairs=". Passes all other arguments to Google Benchmark. If an argument is invalid, prints the
/// usage of `program` and returns nothing.
std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount);

}  // namespace bench
