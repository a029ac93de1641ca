#include <array>
#include <cstdint>
#include <cstdlib>
#include <mutex>

// rand() and srand() of a host's process, in place of the C library's: the solver's sink draws its
// jitter from them, and so a gesture gives the same flow over every C library. A program takes them
// by linking this file itself; in an archive the C library could come first.
//
// An additive feedback generator, x[n] = x[n - 3] + x[n - 31], whose lowest bit is dropped. It gives
// the numbers of the GNU C library, so a program that keeps that one's differs in nothing.

namespace {

constexpr std::size_t history = 31;
constexpr std::size_t lag = 3;
constexpr int discarded = 310;  // until the seeding no longer shows

class Generator {
public:
    explicit constexpr Generator(std::uint32_t seed) {
        std::int64_t word = seed == 0 ? 1 : static_cast<std::int32_t>(seed);
        for (std::uint32_t& place : last_) {
            place = static_cast<std::uint32_t>(word);
            word = word * 16807 % 2147483647;
            word += word < 0 ? 2147483647 : 0;
        }
        for (int number = 0; number < discarded; ++number) {
            next();
        }
    }

    constexpr std::uint32_t next() {
        const std::uint32_t sum = last_[oldest_] + last_[(oldest_ + history - lag) % history];
        last_[oldest_] = sum;
        oldest_ = (oldest_ + 1) % history;
        return sum >> 1;
    }

private:
    std::array<std::uint32_t, history> last_{};
    std::size_t oldest_ = lag;
};

// Host threads and the solver's worker draw from one sequence.
std::mutex lock;
constinit Generator generator(1);

}  // namespace

// The library finds these before the C library's.
#pragma GCC visibility push(default)
extern "C" {

int rand() {
    const std::lock_guard guard(lock);
    return static_cast<int>(generator.next());
}

void srand(unsigned seed) {
    const std::lock_guard guard(lock);
    generator = Generator(seed);
}
}
#pragma GCC visibility pop
