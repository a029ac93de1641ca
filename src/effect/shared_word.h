#pragma once

#include <atomic>

namespace velmora {

/// A 32-bit value that threads share without a lock. It reads and writes like a plain field. The order of accesses to
/// different words is undefined, so a reader that needs several consistent words must hold the touch lock.
template <class Value>
class SharedWord {
public:
    constexpr SharedWord(Value value = {}) : word_(value) {}
    SharedWord(const SharedWord&) = delete;
    SharedWord& operator=(const SharedWord&) = delete;

    operator Value() const { return word_.load(std::memory_order_relaxed); }
    Value operator=(Value value) {
        word_.store(value, std::memory_order_relaxed);
        return value;
    }

private:
    static_assert(sizeof(std::atomic<Value>) == 4);
    std::atomic<Value> word_;
};

}  // namespace velmora
