#include "bench/side_by_side.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>

#include "bench/measure.h"

namespace bench {

namespace {

/// Minimum duration of a sample, in nanoseconds. A sample is long compared with a reading of the clock, but short
/// enough for many samples.
constexpr double sampleNanoseconds = 300'000.0;
constexpr int maxCalls = 10'000;
constexpr int checkedCalls = 2;  // the second call starts from the result of the first

using Form = std::function<void()>;
using Bytes = std::vector<std::byte>;

/// Restores the inputs and runs one implementation `calls` times. Returns the nanoseconds per call.
double sample(const Comparison& comparison, const Form& form, int calls) {
    comparison.restore();
    return nanosecondsOf(CLOCK_THREAD_CPUTIME_ID,
                         [&] {
                             for (int call = 0; call < calls; ++call) {
                                 form();
                             }
                         }) /
           calls;
}

/// Warms up both implementations. Returns the number of calls in a sample. With this number, a sample of the reference
/// implementation takes about sampleNanoseconds.
int callsPerSample(const Comparison& comparison) {
    double shortest = sampleNanoseconds;
    for (int round = 0; round < 5; ++round) {
        sample(comparison, comparison.candidate, 1);
        shortest = std::min(shortest, sample(comparison, comparison.reference, 1));
    }
    return std::clamp(static_cast<int>(sampleNanoseconds / std::max(shortest, 1.0)), 1, maxCalls);
}

std::vector<Bytes> resultOf(const Comparison& comparison, const Form& form) {
    for (const auto output : comparison.outputs()) {
        std::ranges::fill(output, std::byte{0xA5});
    }
    comparison.restore();
    for (int call = 0; call < checkedCalls; ++call) {
        form();
    }
    std::vector<Bytes> result;
    for (const auto output : comparison.outputs()) {
        result.emplace_back(output.begin(), output.end());
    }
    return result;
}

void run(benchmark::State& state, const Comparison& comparison) {
    const int calls = callsPerSample(comparison);
    std::vector<double> ratios;
    std::vector<double> reference;
    std::vector<double> library;
    for (auto _ : state) {
        // A pair is one sample of each implementation. The library runs first in every second pair, so that the order
        // favours neither implementation.
        const bool libraryFirst = ratios.size() % 2 == 1;
        if (libraryFirst) {
            library.push_back(sample(comparison, comparison.candidate, calls));
        }
        reference.push_back(sample(comparison, comparison.reference, calls));
        if (!libraryFirst) {
            library.push_back(sample(comparison, comparison.candidate, calls));
        }
        ratios.push_back(reference.back() / library.back());
        state.SetIterationTime(library.back() * 1e-9);
    }
    if (comparison.target > 0.0) {
        state.counters["goal"] = comparison.target;
    }
    state.counters["ratio"] = median(ratios);
    state.counters["library ns"] = median(library);
    state.counters["reference ns"] = median(reference);
}

}  // namespace

std::string difference(const Comparison& comparison) {
    const std::vector<Bytes> reference = resultOf(comparison, comparison.reference);
    const std::vector<Bytes> library = resultOf(comparison, comparison.candidate);
    for (std::size_t output = 0; output < reference.size(); ++output) {
        const auto [expected, found] = std::ranges::mismatch(reference[output], library[output]);
        if (expected != reference[output].end()) {
            return comparison.kernel + ", " + comparison.grid +
                   ": the library and its reference implementation give different results; "
                   "the first difference is byte " +
                   std::to_string(expected - reference[output].begin()) + " of output " +
                   std::to_string(output);
        }
    }
    return {};
}

double libraryNanoseconds(const Comparison& comparison, int samples) {
    sample(comparison, comparison.candidate, 1);
    std::vector<double> times;
    while (std::ssize(times) < samples) {
        times.push_back(sample(comparison, comparison.candidate, 1));
    }
    return median(times);
}

void registerComparison(const Comparison& comparison, int pairs) {
    benchmark::RegisterBenchmark((comparison.kernel + "/" + comparison.grid).c_str(),
                                 [comparison](benchmark::State& state) { run(state, comparison); })
        ->Iterations(pairs)
        ->UseManualTime();
}

}  // namespace bench
