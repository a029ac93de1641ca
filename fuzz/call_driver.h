#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "fuzz/native_methods.h"

// A host whose calls are chosen by input bytes: the next native method, its arguments, and whether to replace the GL
// context or to reload the library. Sizes range from -5 to 5000. Coordinates can be any int, floats any bit pattern.
// A count always equals the length of its array.

namespace fuzz {

/// The library under test. `reload` closes the library, opens it again and returns the new methods. If `reload` is
/// empty, the library stays loaded.
struct DrivenLibrary {
    NativeMethods methods;
    std::function<NativeMethods()> reload;
};

struct DriveReport {
    /// Calls by the render thread, and calls by touch threads.
    int calls = 0, touchThreadCalls = 0;
    int frames = 0, contexts = 0, reloads = 0;
    /// Faults: damaged guard zones, arrays that are still pinned, results outside their range.
    std::vector<std::string> faults;
};

/// Calls the library until all bytes are used, and adds to the report. The same bytes give the same calls on
/// each thread.
void drive(DrivenLibrary library, std::span<const std::uint8_t> bytes, DriveReport& report);

/// Returns `count` pseudo-random bytes for a seed. They are the same on every machine.
std::vector<std::uint8_t> bytesOfSeed(std::uint32_t seed, std::size_t count);

}  // namespace fuzz
