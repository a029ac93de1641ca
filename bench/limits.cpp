#include "bench/limits.h"

#include <benchmark/benchmark.h>
#include <pthread.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "simd/float4.h"

using velmora::Float4;

namespace bench {

namespace {

/// Registers a benchmark with `samples` iterations. Each iteration calls `sample`; the result is the median.
void registerLimit(const std::string& name, int samples, const std::function<double()>& sample) {
    benchmark::RegisterBenchmark(name.c_str(), [sample](benchmark::State& state) {
        sample();  // warms up caches and clock
        std::vector<double> values;
        for (auto _ : state) {
            values.push_back(sample());
        }
        state.counters["value"] = median(values);
    })->Iterations(samples);
}

/// Returns the memory bandwidth of a copy, in bytes per nanosecond. Loads and stores both count. The copy moves four
/// floats at a time between two arrays, which have `bytes` bytes in total.
double bandwidth(std::size_t bytes) {
    const auto count = static_cast<std::ptrdiff_t>(bytes / 2 / sizeof(float) / 16 * 16);
    static std::vector<float> from;
    static std::vector<float> to;
    from.assign(static_cast<std::size_t>(count), 1.0f);
    to.assign(static_cast<std::size_t>(count), 1.0f);
    const std::size_t rounds = (std::size_t{1} << 24) / bytes;
    const float* const source = from.data();
    float* const target = to.data();
    const Float4 one(1.0f);
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [&] {
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::ptrdiff_t i = 0; i < count; i += 16) {
                for (std::ptrdiff_t group = 0; group < 16; group += 4) {
                    store(target + i + group, velmora::load<Float4>(source + i + group) + one);
                }
            }
            benchmark::ClobberMemory();
        }
    });
    return static_cast<double>(rounds) * static_cast<double>(count) * 2 * sizeof(float) / time;
}

/// Returns the memory bandwidth of stores, in bytes per nanosecond. Each store writes four floats. The stores fill
/// `bytes` bytes, starting `offset` floats after an aligned address.
double storeBandwidth(std::size_t bytes, std::ptrdiff_t offset) {
    const auto count = static_cast<std::ptrdiff_t>(bytes / sizeof(float) / 12 * 12);
    static std::vector<float> to;
    to.assign(static_cast<std::size_t>(count + offset), 0.0f);
    const std::size_t rounds = (std::size_t{1} << 23) / bytes;
    float* const target = to.data() + offset;
    const Float4 one(1.0f);
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [&] {
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::ptrdiff_t i = 0; i < count; i += 12) {
                store(target + i, one);
                store(target + i + 4, one);
                store(target + i + 8, one);
                benchmark::ClobberMemory();  // keeps the compiler from replacing the loop by memset
            }
        }
    });
    return static_cast<double>(rounds) * static_cast<double>(count) * sizeof(float) / time;
}

/// Returns the bandwidth of loads from the first-level cache, in bytes per nanosecond. The loads start `offset` floats
/// after an aligned address.
double loadBandwidth(std::ptrdiff_t offset) {
    constexpr std::ptrdiff_t count = 4096;
    constexpr int rounds = 1'000;
    static const std::vector<float> cells(count + 4, 1.0f);
    const float* const from = cells.data() + offset;
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [=] {
        Float4 sums[8] = {0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f};
        for (int round = 0; round < rounds; ++round) {
            for (std::ptrdiff_t i = 0; i < count; i += 32) {
                for (std::ptrdiff_t lane = 0; lane < 8; ++lane) {
                    sums[lane] = sums[lane] + velmora::load<Float4>(from + i + lane * 4);
                }
            }
        }
        Float4 total = sums[0];
        for (const Float4& sum : sums) {
            total = total + sum;
        }
        benchmark::DoNotOptimize(total);
    });
    return static_cast<double>(rounds) * count * sizeof(float) / time;
}

constexpr std::size_t operations = 240'000;

/// Returns the number of four-lane operations per nanosecond in `chains` independent chains. The function `advance`
/// executes one operation of a chain.
template <std::size_t chains, class Advance>
double throughput(Advance advance) {
    Float4 values[chains];
    for (std::size_t chain = 0; chain < chains; ++chain) {
        values[chain] = Float4(1.0f + static_cast<float>(chain) * 0x1p-10f);
    }
    constexpr std::size_t rounds = operations / chains;
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [&] {
        for (std::size_t round = 0; round < rounds; ++round) {
            for (std::size_t chain = 0; chain < chains; ++chain) {
                values[chain] = advance(values[chain], chain);
            }
        }
    });
    for (Float4& value : values) {
        benchmark::DoNotOptimize(value);
    }
    return static_cast<double>(rounds * chains) / time;
}

/// Computes a smoothed height from its left neighbour, with the same chain of operations as the water's smoothing:
/// three additions, a subtraction, a multiplication and an addition. Each operation depends on the previous one.
template <class Floats>
Floats smoothed(Floats left) {
    const Floats sum = Floats(0.5f) + left + Floats(0.25f) + Floats(0.75f) - Floats(2.0f);
    return Floats(0.5f) + Floats(0.018f) * sum;
}

/// Returns the nanoseconds that a smoothing step takes for a group of four cells. Each group loads values that the
/// previous group has stored.
double smoothingChainThroughMemory() {
    constexpr std::size_t rows = 64;
    constexpr std::size_t groups = 1024;
    static std::vector<float> heights(4 * groups + 1);
    float* const cells = heights.data();
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [&] {
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t group = 0; group < groups; ++group) {
                store(cells + 4 * group + 1, smoothed(velmora::load<Float4>(cells + 4 * group)));
                benchmark::ClobberMemory();
            }
        }
    });
    return time / (rows * groups);
}

/// Returns the nanoseconds that a smoothing step takes for a group of four cells. A register keeps the left neighbour,
/// so no group waits for a store.
double smoothingChainInRegisters() {
    constexpr std::size_t groups = 65'536;
    float height = 1.0f;
    benchmark::DoNotOptimize(height);
    const double time = nanosecondsOf(CLOCK_THREAD_CPUTIME_ID, [&] {
        for (std::size_t group = 0; group < groups; ++group) {
            height = smoothed(height);
        }
        benchmark::DoNotOptimize(height);
    });
    return time / groups;
}

double threadStartAndJoin() {
    return nanosecondsOf(CLOCK_MONOTONIC, [] {
        pthread_t thread{};
        const auto body = [](void* argument) { return argument; };
        if (pthread_create(&thread, nullptr, body, nullptr) == 0) {
            pthread_join(thread, nullptr);
        }
    });
}

}  // namespace

void registerLimits(int samples) {
    struct WorkingSet {
        const char* what;
        std::size_t bytes;
    };
    constexpr WorkingSet workingSets[] = {{"16 KB", 16'384},
                                          {"51 KB, move on 60x107", 51'360},
                                          {"173 KB, Jacobi on 90x160", 172'800},
                                          {"233 KB, move on 128x228", 233'472},
                                          {"307 KB, Jacobi on 120x213", 306'720},
                                          {"2 MB, move on 512x512", 2'097'152}};
    registerLimit("load (bytes per ns)/16 KB", samples, [] { return loadBandwidth(0); });
    registerLimit("load (bytes per ns)/16 KB at unaligned addresses", samples,
                  [] { return loadBandwidth(1); });
    for (const WorkingSet& set : workingSets) {
        registerLimit(std::string("load and store (bytes per ns)/") + set.what, samples,
                      [bytes = set.bytes] { return bandwidth(bytes); });
    }
    constexpr WorkingSet meshes[] = {{"16 KB", 16'384},
                                     {"152 KB, mesh of 60x107", 152'088},
                                     {"1.6 MB, mesh of 255x255", 1'554'492}};
    for (const WorkingSet& mesh : meshes) {
        registerLimit(std::string("store (bytes per ns)/") + mesh.what, samples,
                      [bytes = mesh.bytes] { return storeBandwidth(bytes, 0); });
    }
    registerLimit("store (bytes per ns)/16 KB at unaligned addresses", samples,
                  [] { return storeBandwidth(16'384, 1); });
    const Float4 step(0x1p-20f);
    const Float4 factor(1.0f + 0x1p-20f);
    registerLimit("four-lane operations (per ns)/add", samples, [=] {
        return throughput<12>([=](Float4 value, std::size_t) { return value + step; });
    });
    registerLimit("four-lane operations (per ns)/multiply", samples, [=] {
        return throughput<12>([=](Float4 value, std::size_t) { return value * factor; });
    });
    registerLimit("four-lane operations (per ns)/add and multiply", samples, [=] {
        return throughput<12>([=](Float4 value, std::size_t chain) {
            return chain % 2 == 0 ? value + step : value * factor;
        });
    });
    registerLimit("smoothing chain (ns per group of four)/through memory", samples,
                  smoothingChainThroughMemory);
    registerLimit("smoothing chain (ns per group of four)/in registers", samples,
                  smoothingChainInRegisters);
    registerLimit("thread (ns)/start and join", samples, threadStartAndJoin);
}

}  // namespace bench
