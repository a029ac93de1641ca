#pragma once

namespace bench {

/// Registers benchmarks of the machine's limits, with `samples` iterations each: bytes moved, four-lane operations,
/// dependent operations and thread starts.
void registerLimits(int samples);

}  // namespace bench
