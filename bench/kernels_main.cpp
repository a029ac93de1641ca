#include <benchmark/benchmark.h>

#include <iostream>

#include "bench/limits.h"
#include "bench/options.h"
#include "bench/side_by_side.h"
#include "bench/table_reporter.h"

namespace {

/// Registers every comparison. False, with a line each, where two forms differ: then their times
/// mean nothing.
bool registerComparisons(int pairs) {
    bool same = true;
    for (const auto& group : {bench::waterComparisons(), bench::solverComparisons()}) {
        for (const bench::Comparison& comparison : group) {
            const std::string line = bench::difference(comparison);
            if (!line.empty()) {
                std::cerr << "velmora-bench: " << line << '\n';
                same = false;
            }
            bench::registerComparison(comparison, pairs);
        }
    }
    return same;
}

}  // namespace

int main(int argc, char** argv) {
    const auto options = bench::takeOptions(argc, argv, "velmora-bench", "--pairs=", 301);
    if (!options) {
        return 2;
    }
    if (!registerComparisons(options->count)) {
        return 1;
    }
    bench::registerLimits(options->count);
    bench::TableReporter tables(
        {{"Times of one call, medians of alternating samples.",
          "kernel | grid",
          {"target", "ratio", "library ns", "reference ns"}},
         {"What the machine can do, in the same run.", "limit | of", {"value"}}});
    benchmark::RunSpecifiedBenchmarks(options->table ? &tables : nullptr);
    return 0;
}
