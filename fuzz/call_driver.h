#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "fuzz/native_methods.h"

// A host without any model of the effect: bytes decide which native method comes next, with which
// arguments, and what happens to the GL context and to the library in between. Sizes run from -5
// to 5000, coordinates over all ints, floats over all bit patterns; counts agree with the arrays.

namespace fuzz {

/// The library under test. An empty `reload` keeps it loaded; else it closes the library, opens it
/// anew and returns the new methods.
struct DrivenLibrary {
    NativeMethods methods;
    std::function<NativeMethods()> reload;
};

struct DriveReport {
    /// Calls by the render thread, and those that ran on a touch thread beside it.
    int calls = 0, touchThreadCalls = 0;
    int frames = 0, contexts = 0, reloads = 0;
    /// What a host must never see: a damaged guard zone, an array still pinned, a result outside
    /// its range.
    std::vector<std::string> faults;
};

/// Calls the library until the bytes are used up, and adds to the report. Equal bytes give equal
/// calls on each of the two threads.
void drive(DrivenLibrary library, std::span<const std::uint8_t> bytes, DriveReport& report);

/// `count` bytes of a seed, the same on every machine.
std::vector<std::uint8_t> bytesOfSeed(std::uint32_t seed, std::size_t count);

}  // namespace fuzz
