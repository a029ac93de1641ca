#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// Two forms of a kernel on the same memory, so that caches and page layout favour neither.
struct Comparison {
    std::string kernel;
    std::string grid;
    double target;                  // goal for reference time / library time; 0: none
    std::function<void()> restore;  // restores the inputs; not timed
    std::function<void()> reference;
    std::function<void()> candidate;
    std::function<std::vector<std::span<std::byte>>()> outputs;  // memory of the results
};

Comparison moveComparison(int width, int height);
std::vector<Comparison> waterComparisons();
std::vector<Comparison> solverComparisons();

/// Returns the comparisons of water step, solver step and packing on a grid of this size.
std::vector<Comparison> growthComparisons(int width, int height);

/// Returns the median nanoseconds per call of the library's form.
double libraryNanoseconds(const Comparison& comparison, int samples);

/// Returns an empty string if both forms give the same bytes, else a line about the first difference.
std::string difference(const Comparison& comparison);

/// Registers a benchmark of `pairs` iterations. Each iteration times both forms, one after the other. The counters are
/// the median ratio of the pairs and the median times per call.
void registerComparison(const Comparison& comparison, int pairs);

template <class Value>
std::span<std::byte> bytesOf(Value* values, std::size_t count) {
    return std::as_writable_bytes(std::span(values, count));
}

}  // namespace bench
