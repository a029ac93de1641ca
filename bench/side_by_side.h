#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// The library's kernel and its reference implementation. Both use the same memory, so that caches and the layout of
/// memory pages favour neither of them.
struct Comparison {
    std::string kernel;
    std::string grid;
    double target;  // minimum of reference time / library time to reach; 0 if there is none
    std::function<void()> restore;  // restores the inputs; its time is not measured
    std::function<void()> reference;
    std::function<void()> candidate;
    std::function<std::vector<std::span<std::byte>>()> outputs;  // memory of the results
};

Comparison moveComparison(int width, int height);
std::vector<Comparison> waterComparisons();
std::vector<Comparison> solverComparisons();

/// Returns the comparisons of the water step, the solver step and the packing of velocities on a grid of width x height
/// cells.
std::vector<Comparison> growthComparisons(int width, int height);

/// Returns the median time per call of the library's kernel, in nanoseconds.
double libraryNanoseconds(const Comparison& comparison, int samples);

/// Returns an empty string if the kernel and its reference implementation write the same bytes. Otherwise, returns a
/// message about the first difference.
std::string difference(const Comparison& comparison);

/// Registers a benchmark with `pairs` iterations. Each iteration measures the kernel and its reference implementation,
/// one after the other. The benchmark reports the median ratio of their times, and the median time per call of each.
void registerComparison(const Comparison& comparison, int pairs);

template <class Value>
std::span<std::byte> bytesOf(Value* values, std::size_t count) {
    return std::as_writable_bytes(std::span(values, count));
}

}  // namespace bench
