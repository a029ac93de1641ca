#pragma once

#include <ctime>
#include <vector>

namespace bench {

/// Nanoseconds that `call` takes by `clock`: CLOCK_THREAD_CPUTIME_ID for work of this thread alone,
/// which leaves out the time that other programs had the processor; CLOCK_MONOTONIC for waits.
template <class Call>
double nanosecondsOf(clockid_t clock, Call&& call) {
    timespec start{};
    timespec end{};
    clock_gettime(clock, &start);
    call();
    clock_gettime(clock, &end);
    return static_cast<double>(end.tv_sec - start.tv_sec) * 1e9 +
           static_cast<double>(end.tv_nsec - start.tv_nsec);
}

/// The upper one of the two middle values where their number is even. At least one value.
double median(std::vector<double> values);

}  // namespace bench
