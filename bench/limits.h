#pragma once

namespace bench {

/// Registers benchmarks that measure the limits of the machine, with `samples` iterations each: bytes moved, four-lane
/// operations, chains of dependent operations, and thread starts.
void registerLimits(int samples);

}  // namespace bench
