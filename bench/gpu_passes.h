#pragma once

#include "bench/table_reporter.h"
#include "hostkit/effect_host.h"

namespace bench {

/// Returns a touch that moves in a circle around the middle of the screen, fast enough to count as a drag.
hostkit::Touch circlingTouch(const hostkit::EffectHost& host, int frame);

/// Registers benchmarks that measure the time of each draw call on the GPU. They use timer queries of the extension
/// GL_EXT_disjoint_timer_query. Without the extension, the benchmarks throw HostError.
void registerGpuPasses(int frames);

/// Returns the table of these benchmarks.
TableLayout gpuPassTable();

}  // namespace bench
