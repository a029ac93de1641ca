#pragma once

#include <atomic>
#include <functional>

// Replaces the thread functions that the library imports. A test can stop the solver worker at a chosen moment, or make
// the creation of a thread fail. Calls from other code reach the original functions.

namespace robust {

/// Moments of a solver step: its start, its two calls of rand, and its end, before the thread ends.
enum class Moment { none, start, firstJitter, secondJitter, end };

/// Moment at which the next worker stops. It continues when the library joins it or the test calls release().
extern std::atomic<Moment> nextHold;
/// Waits until the worker has stopped at the chosen moment.
void waitUntilHeld();
bool isHeld();
void release();

/// Function that runs once, when the library next joins a worker. The library waits until the function returns.
extern std::function<void()> whileJoining;

/// Number of calls of pthread_create that will fail with EAGAIN. Only calls of the library count.
extern std::atomic<int> threadsToRefuse;

/// Numbers of threads that the library has started and joined since the program started.
extern std::atomic<int> threadsStarted, threadsJoined;

}  // namespace robust
