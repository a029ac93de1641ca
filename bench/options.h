#pragma once

#include <optional>
#include <string_view>

namespace bench {

struct Options {
    bool sweep;  // print how the cost grows with the size, as columns for tools/draw-speed
    bool table;  // print Markdown tables instead of the benchmark library's lines
    int count;   // samples of each benchmark
};

/// Takes --sweep, --table and `countOption`N (such as "--pairs=") out of the arguments and hands the rest to
/// the benchmark library. Nothing, with a usage line for `program`, where an argument is wrong.
std::optional<Options> takeOptions(int argc, char** argv, std::string_view program,
                                   std::string_view countOption, int defaultCount);

}  // namespace bench
