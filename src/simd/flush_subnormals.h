#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace velmora {

/// Makes this thread's arithmetic flush subnormal numbers to zero during the object's lifetime, then restores the mode.
/// Arithmetic with subnormals is slow on many processors, so a flow or a wave that has decayed would cost more than a
/// moving one. Flushing also gives the same results as the 32-bit ARM vector unit, which always flushes. On WebAssembly
/// the object does nothing, because WebAssembly has no such mode. A build with VELMORA_KEEP_SUBNORMALS does nothing
/// either, so that tests can compare both behaviours.
class FlushSubnormals {
public:
    FlushSubnormals() : found_(readMode()) { writeMode(found_ | flushBits); }
    ~FlushSubnormals() { writeMode(found_); }
    FlushSubnormals(const FlushSubnormals&) = delete;
    FlushSubnormals& operator=(const FlushSubnormals&) = delete;

    static constexpr bool flushes();

private:
#if defined(__SSE2__) && !defined(VELMORA_KEEP_SUBNORMALS)
    using Mode = std::uint32_t;
    static constexpr Mode flushBits = 0x8040;  // MXCSR bits 15 (results) and 6 (operands)
    static Mode readMode() {
        return _mm_getcsr();
    }
    static void writeMode(Mode mode) {
        _mm_setcsr(mode);
    }
#elif defined(__aarch64__) && !defined(VELMORA_KEEP_SUBNORMALS)
    using Mode = std::uint64_t;
    static constexpr Mode flushBits = Mode{1} << 24;  // bit FZ (flush to zero) of FPCR
    static Mode readMode() {
        Mode mode;
        asm volatile("mrs %0, fpcr" : "=r"(mode));
        return mode;
    }
    static void writeMode(Mode mode) {
        asm volatile("msr fpcr, %0" : : "r"(mode) : "memory");
    }
#elif defined(__arm__) && !defined(VELMORA_KEEP_SUBNORMALS)
    using Mode = std::uint32_t;
    static constexpr Mode flushBits = Mode{1} << 24;  // bit FZ (flush to zero) of FPSCR
    static Mode readMode() {
        Mode mode;
        asm volatile("vmrs %0, fpscr" : "=r"(mode));
        return mode;
    }
    static void writeMode(Mode mode) {
        asm volatile("vmsr fpscr, %0" : : "r"(mode) : "memory");
    }
#else
    using Mode = std::uint32_t;
    static constexpr Mode flushBits = 0;
    static Mode readMode() {
        return 0;
    }
    static void writeMode(Mode) {}
#endif

    Mode found_;
};

constexpr bool FlushSubnormals::flushes() {
    return flushBits != 0;
}

}  // namespace velmora
