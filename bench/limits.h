#pragma once

namespace bench {

/// Registers, as benchmarks of `samples` iterations, what the machine can do at most in the units
/// that the kernels spend: bytes moved, four-lane operations, dependent operations, thread starts.
void registerLimits(int samples);

}  // namespace bench
