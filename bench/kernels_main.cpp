#include <benchmark/benchmark.h>

#include <algorithm>
#include <initializer_list>
#include <iostream>
#include <string>

#include "bench/history_reporter.h"
#include "bench/limits.h"
#include "bench/options.h"
#include "bench/side_by_side.h"
#include "bench/table_reporter.h"

namespace {

/// Registers the benchmark of every comparison. Prints a line for each kernel whose results differ from the results of
/// its reference implementation. Returns false if there is such a kernel, because times of different results cannot be
/// compared.
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

/// Prints the sizes of the data caches, then the nanoseconds per cell of three kernels on grids of growing size.
void printGrowth(int samples) {
    struct Size {
        int width;
        int height;
    };
    constexpr Size sizes[] = {{45, 80},   {60, 107},  {90, 160},  {120, 213}, {180, 320},
                              {270, 480}, {360, 640}, {540, 960}, {720, 1280}};
    for (const benchmark::CPUInfo::CacheInfo& cache : benchmark::CPUInfo::Get().caches) {
        if (cache.type != "Instruction") {
            std::cout << "# cache " << cache.level << ' ' << cache.size << '\n';
        }
    }
    std::cout << "# width, height, cells, ns per cell of: move, solver step, packing\n";
    for (const Size size : sizes) {
        const double cells = static_cast<double>(size.width) * size.height;
        std::cout << size.width << ' ' << size.height << ' ' << cells;
        for (const bench::Comparison& growth : bench::growthComparisons(size.width, size.height)) {
            std::cout << ' ' << bench::libraryNanoseconds(growth, samples) / cells;
        }
        std::cout << std::endl;
    }
}

/// Runs the comparisons and appends their ratios to a CSV file. Returns the exit code of the program.
int appendHistory(const std::string& file) {
    bench::HistoryReporter history(file);
    benchmark::RunSpecifiedBenchmarks(&history);
    if (!history.error().empty()) {
        std::cerr << "velmora-bench: " << history.error() << '\n';
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const auto options = bench::takeOptions(argc, argv, "velmora-bench", "--pairs=", 301);
    if (!options) {
        return 2;
    }
    if (options->sweep) {
        printGrowth(std::min(options->count, 41));
        return 0;
    }
    if (!registerComparisons(options->count)) {
        return 1;
    }
    if (!options->history.empty()) {
        return appendHistory(options->history);
    }
    bench::registerLimits(options->count);
    bench::TableReporter tables(
        {{"The table shows the median time of one call of each kernel and of its reference "
          "implementation.",
          "kernel | grid",
          {"goal", "ratio", "library ns", "reference ns"}},
         {"The next table shows the limits of the machine, measured in the same run as the "
          "kernels.",
          "limit | of",
          {"value"}}});
    benchmark::RunSpecifiedBenchmarks(options->table ? &tables : nullptr);
    return 0;
}
