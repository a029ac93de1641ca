#pragma once

#include <atomic>
#include <functional>

// Replaces the thread functions that the library imports. A test can hold the solver worker at a chosen moment, or let
// the creation of a thread fail. Calls from other code are forwarded unchanged.

namespace robust {

/// Moments of a solver step: its start, two in the middle, and its end, before the thread ends.
enum class Moment { none, start, firstJitter, secondJitter, end };

/// Moment at which the next worker stops until it is joined or released.
extern std::atomic<Moment> nextHold;
/// Waits until the worker has reached that moment.
void waitUntilHeld();
bool isHeld();
void release();

/// Runs once, while the library waits for its next worker.
extern std::function<void()> whileJoining;

/// Number of the library's next thread creations that fail for lack of resources.
extern std::atomic<int> threadsToRefuse;

/// Numbers of threads that the library has started and joined since the program started.
extern std::atomic<int> threadsStarted, threadsJoined;

}  // namespace robust
