#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "fuzz/native_methods.h"

// A host that turns input bytes into calls. The bytes choose the next native method and its arguments. They also choose
// when to replace the GL context or to reload the library. Sizes are from -5 to 5000. Coordinates can be any int, and
// floats can have any bit pattern. An argument that counts array elements always equals the length of its array,
// because the library cannot check it.

namespace fuzz {

/// The library under test. `reload` closes the library, opens it again and returns the methods of the new copy. If
/// `reload` is empty, the library is never closed.
struct DrivenLibrary {
    NativeMethods methods;
    std::function<NativeMethods()> reload;
};

struct DriveReport {
    /// Number of calls by the render thread and by touch threads.
    int calls = 0, touchThreadCalls = 0;
    int frames = 0, contexts = 0, reloads = 0;
    /// Violations of the contract: damaged guard zones, arrays that are still pinned, and results outside their range.
    std::vector<std::string> violations;
};

/// Calls the library until all bytes are used, and adds the results to `report`. With the same bytes, each thread
/// always makes the same calls.
void drive(DrivenLibrary library, std::span<const std::uint8_t> bytes, DriveReport& report);

/// Returns `count` pseudo-random bytes for a seed. The bytes are the same on every machine.
std::vector<std::uint8_t> bytesOfSeed(std::uint32_t seed, std::size_t count);

}  // namespace fuzz
