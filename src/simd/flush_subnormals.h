#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace velmora {

/// Flushes subnormal numbers to zero in this thread's arithmetic during its lifetime, then restores the mode. A flow
/// or a wave that has decayed then costs no more than a moving one. The results also equal those of the 32-bit ARM
/// vector unit, which always flushes. WebAssembly has no such mode. VELMORA_KEEP_SUBNORMALS builds for other
/// processors as if they had no such mode, for comparison.
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
    static constexpr Mode flushBits = 0x8040;  // results (bit 15) and operands (bit 6) of MXCSR
    static Mode readMode() {
        return _mm_getcsr();
    }
    static void writeMode(Mode mode) {
        _mm_setcsr(mode);
    }
#elif defined(__aarch64__) && !defined(VELMORA_KEEP_SUBNORMALS)
    using Mode = std::uint64_t;
    static constexpr Mode flushBits = Mode{1} << 24;  // FZ of FPCR
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
    static constexpr Mode flushBits = Mode{1} << 24;  // FZ of FPSCR
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
