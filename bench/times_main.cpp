#include <algorithm>
#include <chrono>
#include <cstdio>
#include <initializer_list>
#include <limits>
#include <ratio>

#include "bench/side_by_side.h"

// Prints the times of the library's kernels, for builds that lack Google Benchmark. Each line has the kernel, the grid
// and the nanoseconds per call, separated by '|'. A time is the shortest of many samples.

namespace {

constexpr int samples = 400;
constexpr double sampleNanoseconds = 200'000.0;

double sample(const bench::Comparison& comparison, int calls) {
    using Clock = std::chrono::steady_clock;
    comparison.restore();
    const auto start = Clock::now();
    for (int call = 0; call < calls; ++call) {
        comparison.candidate();
    }
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / calls;
}

double shortest(const bench::Comparison& comparison) {
    const double once = std::max(sample(comparison, 100), 1.0);
    const int calls = std::clamp(static_cast<int>(sampleNanoseconds / once), 1, 10'000);
    double shortest = std::numeric_limits<double>::infinity();
    for (int round = 0; round < samples; ++round) {
        shortest = std::min(shortest, sample(comparison, calls));
    }
    return shortest;
}

}  // namespace

int main() {
    for (const auto& group : {bench::waterComparisons(), bench::solverComparisons()}) {
        for (const bench::Comparison& comparison : group) {
            std::printf("%s | %s | %.0f\n", comparison.kernel.c_str(), comparison.grid.c_str(),
                        shortest(comparison));
        }
    }
}
