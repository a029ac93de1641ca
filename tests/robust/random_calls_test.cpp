#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/call_driver.h"
#include "tests/host/loaded_library.h"

// Makes random calls from two threads. The environment variable VELMORA_SEED selects the only seed to run;
// VELMORA_SEEDS sets the number of seeds to run.

namespace {

void driveSeed(std::uint32_t seed, fuzz::DriveReport& report) {
    // Print the seed before the run. If the run crashes, the seed is then the last line of the output.
    std::cout << "VELMORA_SEED=" << seed << std::endl;
    std::optional<testhost::LoadedLibrary> library(std::in_place);
    const auto reload = [&library] {
        library->unload();
        EXPECT_FALSE(testhost::LoadedLibrary::isLoaded());
        library.emplace();
        return library->methods;
    };
    fuzz::drive({library->methods, reload}, fuzz::bytesOfSeed(seed, 12000), report);
}

TEST(RandomCalls, DoNotCrashOrViolateTheContract) {
    const char* const only = std::getenv("VELMORA_SEED");
    const char* const many = std::getenv("VELMORA_SEEDS");
    const int first = only ? std::atoi(only) : 1;
    const int count = only ? 1 : many ? std::atoi(many) : 8;
    fuzz::DriveReport sum;
    for (int seed = first; seed < first + count; ++seed) {
        driveSeed(static_cast<std::uint32_t>(seed), sum);
        EXPECT_EQ(sum.violations, std::vector<std::string>{}) << "with seed " << seed;
    }
    EXPECT_GT(sum.frames, 10 * count);
    std::cout << count << " seeds: " << sum.calls << " calls, " << sum.frames << " frames, "
              << sum.contexts << " contexts, " << sum.reloads << " reloads, "
              << sum.touchThreadCalls << " calls on touch threads\n";
}

}  // namespace
