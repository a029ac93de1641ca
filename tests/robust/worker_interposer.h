#pragma once

#include <atomic>
#include <functional>

// Replaces the thread functions that the library imports. A test can stop the solver worker at a chosen moment, or make
// the creation of a thread fail. Calls from other code are forwarded unchanged.

namespace robust {

/// Moments of a solver step: its start, its two calls of rand, and its end, before the thread ends.
enum class Moment { none, start, firstJitter, secondJitter, end };

/// Moment at which the next worker stops until it is joined or released.
extern std::atomic<Moment> nextHold;
/// Waits until the worker has stopped at that moment.
void waitUntilHeld();
bool isHeld();
void release();

/// Function that runs once, while the library waits for its next worker.
extern std::function<void()> whileJoining;

/// Number of thread creations by the library, from the next one on, that fail with EAGAIN.
extern std::atomic<int> threadsToRefuse;

/// Numbers of threads that the library has started and joined since the program started.
extern std::atomic<int> threadsStarted, threadsJoined;

}  // namespace robust
