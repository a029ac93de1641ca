#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// One kernel in two forms that work on the same memory: caches and page layout favour neither.
struct Comparison {
    std::string kernel;
    std::string grid;
    double target;  // how many times faster than the reference the library is to be; 0: not said
    std::function<void()> restore;  // the same inputs again; not timed
    std::function<void()> reference;
    std::function<void()> candidate;
    std::function<std::vector<std::span<std::byte>>()> outputs;  // where the results lie now
};

Comparison moveComparison(int width, int height);
std::vector<Comparison> waterComparisons();
std::vector<Comparison> solverComparisons();

/// The water step, the solver step and packing on a grid of this size.
std::vector<Comparison> growthComparisons(int width, int height);

/// Median nanoseconds of a call of the library's form.
double libraryNanoseconds(const Comparison& comparison, int samples);

/// Empty where both forms give the same bytes; else a line that says where they part.
std::string difference(const Comparison& comparison);

/// Registers a benchmark of `pairs` iterations, each of which times both forms one after the other,
/// and whose counters are medians: the ratio of each pair, and the times of a call.
void registerComparison(const Comparison& comparison, int pairs);

template <class Value>
std::span<std::byte> bytesOf(Value* values, std::size_t count) {
    return std::as_writable_bytes(std::span(values, count));
}

}  // namespace bench
