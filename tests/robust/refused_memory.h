#pragma once

// Replaces the memory functions that the library imports. The sanitizers also replace them, so a program with this file
// is built without sanitizers.

namespace robust {

/// During its lifetime, counts the library's allocations and lets some fail: number `first` alone, or all from there
/// on. If `first` is 0 and the extent is one, none fails.
class RefusedMemory {
public:
    enum class Extent { one, allFromThere };
    RefusedMemory(int first, Extent extent);
    ~RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
    int asked() const;
};

/// Returns the number of blocks that the library has allocated and not freed.
long blocksHeld();

}  // namespace robust
