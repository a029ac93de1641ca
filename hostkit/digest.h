#pragma once

#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

namespace hostkit {

/// A 64-bit FNV-1a digest of a byte sequence.
struct Digest {
    /// Digest of the bytes added so far. The initial value is the FNV offset basis.
    std::uint64_t state = 0xCBF29CE484222325;
};

/// Adds a sequence of bytes to the digest.
/// @param digest digest to update
/// @param bytes bytes to add
inline void addBytes(Digest& digest, std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
        digest.state = (digest.state ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3;
    }
}

/// Converts the digest to text.
/// @param digest digest to convert
/// @return sixteen lower-case hexadecimal digits
inline std::string hex(const Digest& digest) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, digest.state);
    return digits;
}

}  // namespace hostkit
