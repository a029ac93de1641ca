#pragma once

#include <ctime>
#include <vector>

namespace bench {

/// Returns the duration of a call in nanoseconds. The clock CLOCK_THREAD_CPUTIME_ID counts only the time in which this
/// thread runs. CLOCK_MONOTONIC also counts waiting and the time of other programs.
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

/// Returns the median of the values. If their number is even, returns the larger of the two middle values. `values`
/// must not be empty.
double median(std::vector<double> values);

}  // namespace bench
