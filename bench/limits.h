#pragma once

namespace bench {

/// Registers benchmarks that measure the limits of the machine: the memory bandwidth, the rate of four-lane operations,
/// chains of dependent operations, and the start of a thread. Each benchmark has `samples` iterations.
void registerLimits(int samples);

}  // namespace bench
