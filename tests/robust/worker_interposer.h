#pragma once

#include <atomic>
#include <functional>

// This program's definitions of the thread functions that the library imports: a test may hold the
// solver worker at a chosen moment or refuse the library a thread. Calls of anyone else go through untouched.

namespace robust {

/// The moments of a solver step: before it, twice in the middle, and when its work is done but the
/// thread not yet ended.
enum class Moment { none, start, firstJitter, secondJitter, end };

/// The next worker stops at this moment until it is joined or released.
extern std::atomic<Moment> nextHold;
/// Waits until the worker has come to that moment.
void waitUntilHeld();
bool isHeld();
void release();

/// Runs once, while the library waits for its next worker.
extern std::function<void()> whileJoining;

/// As many of the library's next thread creations fail, for want of resources.
extern std::atomic<int> threadsToRefuse;

/// Threads that the library has started and waited for since the program began.
extern std::atomic<int> threadsStarted, threadsJoined;

}  // namespace robust
