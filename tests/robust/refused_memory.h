#pragma once

// Replaces the allocation functions that the library imports. Sanitizers also replace these functions, so a program
// that uses this file is built only without sanitizers.

namespace robust {

/// While an object of this class exists, it counts the library's allocations and makes some of them fail. With `one`,
/// only allocation number `first` fails. With `allFromThere`, the later allocations fail, too. The first allocation has
/// the number 1, so {0, one} only counts.
class RefusedMemory {
public:
    enum class Extent { one, allFromThere };
    RefusedMemory(int first, Extent extent);
    ~RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
    int asked() const;
};

/// Returns the number of blocks that the library has allocated and not yet freed.
long blocksHeld();

}  // namespace robust
