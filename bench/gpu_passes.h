#pragma once

#include "bench/table_reporter.h"

namespace bench {

/// Registers benchmarks that measure the time of each draw call on the GPU. They use timer queries of the extension
/// GL_EXT_disjoint_timer_query. Without the extension, the benchmarks throw HostError.
void registerGpuPasses(int frames);

/// Returns the table of these benchmarks.
TableLayout gpuPassTable();

}  // namespace bench
