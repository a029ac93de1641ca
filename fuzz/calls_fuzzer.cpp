#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/call_driver.h"

// Fuzzes call sequences. The library stays loaded, because libFuzzer counts branches by address.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::NativeMethods methods = fuzz::findMethods(RTLD_DEFAULT);
    fuzz::DriveReport report;
    fuzz::drive({methods, {}}, {data, size}, report);
    if (!report.faults.empty()) {
        std::fprintf(stderr, "%s\n", report.faults.front().c_str());
        std::abort();
    }
    return 0;
}
