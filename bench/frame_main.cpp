#include <GLES2/gl2.h>
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <iostream>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measure.h"
#include "bench/options.h"
#include "bench/table_reporter.h"
#include "hostkit/effect_host.h"
#include "hostkit/gl_recorder.h"
#include "hostkit/host_error.h"

// Whole frames through the native methods, cut where the library makes its GL calls.

namespace {

using Clock = std::chrono::steady_clock;

constexpr int warmUpFrames = 5;

/// Moments of one frame, in order. The hook sets those in the middle, each once.
struct Moments {
    Clock::time_point start;
    Clock::time_point firstCall;  // the library has begun: the host's water step is done
    Clock::time_point firstBind;  // the solver worker has been waited for, in an ink frame
    Clock::time_point firstDraw;
    Clock::time_point submitted;
    Clock::time_point finished;

    void notice(std::string_view function) {
        const auto setOnce = [](Clock::time_point& moment) {
            if (moment == Clock::time_point()) {
                moment = Clock::now();
            }
        };
        setOnce(firstCall);
        if (function == "glBindTexture") {
            setOnce(firstBind);
        }
        if (function.starts_with("glDraw")) {
            setOnce(firstDraw);
        }
    }
};

/// The finger circles around the middle, fast enough for a drag.
hostkit::Touch touchOfFrame(const hostkit::EffectHost& host, int frame) {
    const double angle = frame * 2.0 * std::numbers::pi / 90.0;
    const auto action = frame == 0 ? hostkit::TouchAction::down : hostkit::TouchAction::move;
    return {action, host.width() * (0.5 + 0.3 * std::cos(angle)),
            host.height() * (0.5 + 0.3 * std::sin(angle)), 0.5f};
}

Moments runFrame(hostkit::EffectHost& host, int frame) {
    Moments moments{};
    hostkit::glRecorder().inside = [&](const char* function) { moments.notice(function); };
    moments.start = Clock::now();
    host.touch(touchOfFrame(host, frame));
    host.frame();
    moments.submitted = Clock::now();
    hostkit::glRecorder().inside = nullptr;
    glFinish();
    moments.finished = Clock::now();
    return moments;
}

/// Median of the microseconds between two moments.
double medianBetween(const std::vector<Moments>& frames, Clock::time_point Moments::*from,
                     Clock::time_point Moments::*to) {
    std::vector<double> times;
    for (const Moments& moments : frames) {
        times.push_back(
            std::chrono::duration<double, std::micro>(moments.*to - moments.*from).count());
    }
    return bench::median(times);
}

void runFrames(benchmark::State& state, int width, int height, bool inkEnabled) {
    hostkit::EffectHost host({.width = width, .height = height, .inkEnabled = inkEnabled});
    int frame = 0;
    while (frame < warmUpFrames) {
        runFrame(host, frame++);
    }
    std::vector<Moments> frames;
    for (auto _ : state) {
        frames.push_back(runFrame(host, frame++));
    }
    const auto count = [&](const char* name, Clock::time_point Moments::*from,
                           Clock::time_point Moments::*to) {
        state.counters[name] = medianBetween(frames, from, to);
    };
    count("water us", &Moments::start, &Moments::firstCall);
    if (inkEnabled) {
        count("solver wait us", &Moments::firstCall, &Moments::firstBind);
    }
    count("until first draw us", inkEnabled ? &Moments::firstBind : &Moments::firstCall,
          &Moments::firstDraw);
    count("draws us", &Moments::firstDraw, &Moments::submitted);
    count("finish us", &Moments::submitted, &Moments::finished);
    count("frame us", &Moments::start, &Moments::finished);
}

void registerFrames(int frames) {
    struct Screen {
        int width;
        int height;
    };
    for (const bool inkEnabled : {true, false}) {
        for (const Screen screen : {Screen{1080, 1920}, Screen{540, 960}}) {
            const std::string name = std::string(inkEnabled ? "ink" : "water only") + "/" +
                                     std::to_string(screen.width) + "x" +
                                     std::to_string(screen.height);
            benchmark::RegisterBenchmark(name.c_str(),
                                         [=](benchmark::State& state) {
                                             runFrames(state, screen.width, screen.height,
                                                       inkEnabled);
                                         })
                ->Iterations(frames)
                ->UseRealTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    const auto options = bench::takeOptions(argc, argv, "velmora-bench-frame", "--frames=", 40);
    if (!options) {
        return 2;
    }
    registerFrames(options->count);
    bench::TableReporter tables({{"Times of one frame, medians.",
                                  "frame | screen",
                                  {"water us", "solver wait us", "until first draw us", "draws us",
                                   "finish us", "frame us"}}});
    try {
        benchmark::RunSpecifiedBenchmarks(options->table ? &tables : nullptr);
    } catch (const hostkit::HostError& error) {
        std::cerr << "velmora-bench-frame: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
