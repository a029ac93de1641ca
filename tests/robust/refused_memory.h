#pragma once

// Replaces the memory functions that the library imports. Sanitizers replace them too, so a program that uses this file
// is built only without sanitizers.

namespace robust {

/// While an object exists, counts the library's allocations and makes some of them fail: only number `first`, or all
/// from `first` on. If `first` is 0 and the extent is `one`, none fails.
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
