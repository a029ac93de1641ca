#pragma once

#include <atomic>

namespace velmora {

/// One 32-bit word that threads share without a lock; reads and writes like a plain field. No order
/// between words is promised: whoever needs several of one moment takes the touch lock.
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
