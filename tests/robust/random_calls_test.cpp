#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>

#include "fuzz/call_driver.h"
#include "tests/robust/loaded_library.h"

// Random calls from two threads. VELMORA_SEED=N runs one seed alone, VELMORA_SEEDS=N that many.

namespace {

std::optional<std::uint32_t> numberFrom(const char* variable) {
    const char* const text = std::getenv(variable);
    std::uint32_t number = 0;
    if (!text || std::from_chars(text, text + std::strlen(text), number).ec != std::errc()) {
        return {};
    }
    return number;
}

fuzz::DriveReport driveSeed(std::uint32_t seed) {
    // Printed before it runs: what kills the program leaves its seed as the last line.
    std::cout << "VELMORA_SEED=" << seed << std::endl;
    std::optional<robust::LoadedLibrary> library(std::in_place);
    const auto reload = [&library] {
        library->unload();
        EXPECT_FALSE(robust::LoadedLibrary::isLoaded());
        library.emplace();
        return library->methods;
    };
    return fuzz::drive({library->methods, reload}, fuzz::bytesOfSeed(seed, 12000));
}

TEST(RandomCalls, NoneIsTheLast) {
    const auto only = numberFrom("VELMORA_SEED");
    const std::uint32_t first = only.value_or(1);
    const std::uint32_t count = only ? 1 : numberFrom("VELMORA_SEEDS").value_or(8);
    fuzz::DriveReport sum;
    for (std::uint32_t seed = first; seed < first + count; ++seed) {
        const fuzz::DriveReport report = driveSeed(seed);
        EXPECT_TRUE(report.faults.empty()) << "seed " << seed << ": " << report.faults.front();
        EXPECT_GT(report.frames, 0);
        sum.calls += report.calls;
        sum.touchThreadCalls += report.touchThreadCalls;
        sum.frames += report.frames;
        sum.contexts += report.contexts;
        sum.reloads += report.reloads;
    }
    std::cout << count << " seeds: " << sum.calls << " calls, " << sum.frames << " frames, "
              << sum.contexts << " contexts, " << sum.reloads << " reloads, "
              << sum.touchThreadCalls << " calls beside\n";
}

}  // namespace
