#pragma once

#include <ctime>
#include <vector>

namespace bench {

/// Returns the nanoseconds of a call by `clock`. CLOCK_THREAD_CPUTIME_ID measures the work of this thread, without the
/// time of other programs. CLOCK_MONOTONIC also measures waits.
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

/// Returns the median, or the upper of the two middle values. Needs at least one value.
double median(std::vector<double> values);

}  // namespace bench
