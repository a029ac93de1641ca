#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace bench {

struct Options {
    bool sweep;  // print cost by size, as columns for tools/draw-speed
    bool table;  // print Markdown tables instead of the benchmark library's output
    int count;   // samples per benchmark
    /// CSV file to which a row of ratios is appended. Empty: none.
    std::string history;
};

/// Reads --sweep, --table, --history=FILE and `countOption`N (such as "--pairs=") and passes the other arguments to the benchmark
/// library. If an argument is wrong, prints the usage of `program` and returns nothing.
std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount);

}  // namespace bench
