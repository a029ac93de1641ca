#pragma once

// This program's definitions of the memory functions that the library imports. The sanitizers have
// functions of their own: a program with this is built without them.

namespace robust {

/// Allocations that the library makes while this exists are counted, and fail from the `first`th
/// on: one of them, or all that follow too. The 0th alone: none fails.
class RefusedMemory {
public:
    enum class Extent { one, allFromThere };
    RefusedMemory(int first, Extent extent);
    ~RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
    int asked() const;
};

/// Blocks that the library has taken and not given back.
long blocksHeld();

}  // namespace robust
