#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bench {

struct Options {
    bool sweep;  // print cost by size, in the columns that tools/draw-speed reads
    bool table;  // print Markdown tables instead of Google Benchmark's output
    int count;   // samples per benchmark
    /// CSV file to which a row of ratios is appended, or empty to append none.
    std::string history;
};

/// Reads --sweep, --table, --history=FILE and `countOption`N (such as "--pairs=N"), and passes the other arguments to
/// Google Benchmark. If an argument is invalid, prints the usage of `program` and returns nothing.
std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount);

}  // namespace bench
