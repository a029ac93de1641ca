#include <array>
#include <cstdint>
#include <cstdlib>
#include <mutex>

// Replaces rand() and srand() of the C library. The solver calls rand(), so with this replacement a gesture produces
// the same flow with any C library. A program must link this object file directly: from an archive, the linker could
// prefer the functions of the C library.
//
// The generator computes x[n] = x[n - 3] + x[n - 31] and returns x[n] without its lowest bit. These are the numbers of
// the GNU C library, so on that library a program behaves the same if it does not link this file.

namespace {

constexpr std::size_t history = 31;
constexpr std::size_t lag = 3;
/// Number of values to discard after seeding, because the first values are not random enough: they depend on the seed
/// in a simple way.
constexpr int discarded = 310;

class Generator {
public:
    explicit constexpr Generator(std::uint32_t seed) {
        std::int64_t word = seed == 0 ? 1 : static_cast<std::int32_t>(seed);
        for (std::uint32_t& number : last_) {
            number = static_cast<std::uint32_t>(word);
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

// Protects the generator, which the host's threads and the solver's worker thread share.
std::mutex lock;
constinit Generator generator(1);

}  // namespace

// The linker binds the library's calls to the functions below instead of those of the C library.
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
