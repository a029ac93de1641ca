#pragma once

#include <optional>
#include <string_view>

namespace bench {

struct Options {
    bool sweep;  // print cost by size, as columns for tools/draw-speed
    bool table;  // print Markdown tables instead of the benchmark library's output
    int count;   // samples per benchmark
};

/// Reads --sweep, --table and `countOption`N (such as "--pairs=") and passes the other arguments to the benchmark
/// library. If an argument is wrong, prints the usage of `program` and returns nothing.
std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount);

}  // namespace bench
