#include "player/digest.h"

#include <cinttypes>
#include <cstdio>

namespace player {

void addBytes(Digest& digest, std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
        digest.state = (digest.state ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3;
    }
}

std::string hex(const Digest& digest) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, digest.state);
    return digits;
}

}  // namespace player
