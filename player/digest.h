#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace player {

/// A running 64-bit FNV-1a digest of bytes.
struct Digest {
    std::uint64_t state = 0xCBF29CE484222325;
};

void addBytes(Digest& digest, std::span<const std::byte> bytes);

/// Sixteen hexadecimal digits.
std::string hex(const Digest& digest);

}  // namespace player
