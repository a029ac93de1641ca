#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/call_driver.h"

// Fuzzes sequences of calls. The library is never reloaded, because libFuzzer counts branches by their address, which a
// reload would change.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::NativeMethods methods = fuzz::findMethods(RTLD_DEFAULT);
    fuzz::DriveReport report;
    fuzz::drive({methods, {}}, {data, size}, report);
    if (!report.violations.empty()) {
        std::fprintf(stderr, "%s\n", report.violations.front().c_str());
        std::abort();
    }
    return 0;
}
