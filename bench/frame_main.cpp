#include <GLES2/gl2.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <initializer_list>
#include <iostream>
#include <ratio>
#include <string>
#include <vector>

#include "app/effect_probe.h"
#include "bench/circling_touch.h"
#include "bench/gpu_passes.h"
#include "bench/measure.h"
#include "bench/options.h"
#include "bench/table_reporter.h"
#include "hostkit/effect_host.h"
#include "hostkit/gl_context.h"
#include "hostkit/host_error.h"
#include "hostkit/instruments/gl_recorder.h"

// Measures the times of whole frames and of the parts of a frame. Hooks around the library's GL calls read the clock
// when a part of the frame begins or ends.

namespace {

using Clock = std::chrono::steady_clock;

constexpr int warmUpFrames = 5;

/// Times at which the parts of one frame begin or end, in chronological order.
struct Moments {
    Clock::time_point start;
    Clock::time_point firstCall;   // first GL call of the library; the host's water step has ended
    Clock::time_point solverDone;  // end of the wait for the solver worker; only with ink
    Clock::time_point firstDraw;
    Clock::time_point submitted;
    Clock::time_point finished;
    double outside;    // processor time of this thread outside GL calls, nanoseconds
    double processor;  // processor time of all threads in the whole frame, nanoseconds
};

double nanosecondsBy(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

double threadNanoseconds() {
    return nanosecondsBy(CLOCK_THREAD_CPUTIME_ID);
}

/// Returns the time in nanoseconds between two successive readings of the clock. OutsideClock subtracts this time from
/// each measurement.
double emptyInterval() {
    static const double median = [] {
        std::vector<double> intervals;
        for (int i = 0; i < 1001; ++i) {
            const double start = threadNanoseconds();
            intervals.push_back(threadNanoseconds() - start);
        }
        return bench::median(intervals);
    }();
    return median;
}

/// Sums the processor time, in nanoseconds, that this thread spends outside GL calls.
struct OutsideClock {
    void leave() { left = threadNanoseconds(); }
    void enter() { sum += threadNanoseconds() - left - emptyInterval(); }
    double sum = 0.0;
    double left = 0.0;
};

Moments runFrame(hostkit::EffectHost& host, app::EffectProbe& probe, int frame) {
    Moments moments{};
    OutsideClock outside;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    const auto seeingProbe = recorder.inside;
    recorder.inside = [&](const char* function) {
        outside.enter();
        seeingProbe(function);
    };
    recorder.after = [&] { outside.leave(); };
    const double processorStart = nanosecondsBy(CLOCK_PROCESS_CPUTIME_ID);
    moments.start = Clock::now();
    outside.leave();
    host.touch(bench::circlingTouch(host, frame));
    host.step({}, hostkit::displayedFrame);
    probe.draw(host);
    outside.enter();
    moments.outside = outside.sum;
    moments.submitted = Clock::now();
    recorder.inside = seeingProbe;
    recorder.after = nullptr;
    glFinish();
    moments.finished = Clock::now();
    moments.processor = nanosecondsBy(CLOCK_PROCESS_CPUTIME_ID) - processorStart;
    const app::FrameMoments& seen = probe.moments();
    moments.firstCall = seen.begin.value_or(moments.start);
    moments.solverDone = seen.solverDone.value_or(moments.firstCall);
    moments.firstDraw = seen.firstDraw.value_or(moments.firstCall);
    return moments;
}

/// Returns the median time between two moments of a frame, in microseconds.
double medianBetween(const std::vector<Moments>& frames, Clock::time_point Moments::*from,
                     Clock::time_point Moments::*to) {
    std::vector<double> times;
    for (const Moments& moments : frames) {
        times.push_back(
            std::chrono::duration<double, std::micro>(moments.*to - moments.*from).count());
    }
    return bench::median(times);
}

/// Returns the median of a field over all frames, converted from nanoseconds to microseconds.
double medianOf(const std::vector<Moments>& frames, double Moments::*nanoseconds) {
    std::vector<double> times;
    for (const Moments& moments : frames) {
        times.push_back(moments.*nanoseconds * 1e-3);
    }
    return bench::median(times);
}

/// Prints two processor times per frame, in microseconds, for screens of growing size. The first is the time of this
/// thread outside GL calls. The second is the time of all threads, including the solver's worker and the software
/// rasteriser.
void printGrowth() {
    struct Screen {
        int width;
        int height;
    };
    std::cout
        << "# width, height, pixels, CPU time in us outside GL, CPU time in us of all threads\n";
    for (const Screen screen : {Screen{270, 480}, Screen{540, 960}, Screen{720, 1280},
                                Screen{1080, 1920}, Screen{1440, 2560}, Screen{2160, 3840}}) {
        hostkit::EffectHost host({.width = screen.width, .height = screen.height});
        app::EffectProbe probe;
        probe.watch({screen.width, screen.height}, true);
        const double pixels = static_cast<double>(screen.width) * screen.height;
        const int count = static_cast<int>(std::clamp(2e7 / pixels, 5.0, 40.0));
        std::vector<Moments> frames;
        for (int frame = 0; frame < warmUpFrames + count; ++frame) {
            frames.push_back(runFrame(host, probe, frame));
        }
        frames.erase(frames.begin(), frames.begin() + warmUpFrames);
        std::cout << screen.width << ' ' << screen.height << ' ' << pixels << ' '
                  << medianOf(frames, &Moments::outside) << ' '
                  << medianOf(frames, &Moments::processor) << std::endl;
    }
}

void runFrames(benchmark::State& state, int width, int height, bool inkEnabled) {
    hostkit::EffectHost host({.width = width, .height = height, .inkEnabled = inkEnabled});
    app::EffectProbe probe;
    probe.watch({width, height}, inkEnabled);
    int frame = 0;
    while (frame < warmUpFrames) {
        runFrame(host, probe, frame++);
    }
    std::vector<Moments> frames;
    for (auto _ : state) {
        frames.push_back(runFrame(host, probe, frame++));
    }
    const auto count = [&](const char* name, Clock::time_point Moments::*from,
                           Clock::time_point Moments::*to) {
        state.counters[name] = medianBetween(frames, from, to);
    };
    state.counters["outside GL us"] = medianOf(frames, &Moments::outside);
    count("water us", &Moments::start, &Moments::firstCall);
    if (inkEnabled) {
        count("solver wait us", &Moments::firstCall, &Moments::solverDone);
    }
    count("before draws us", &Moments::solverDone, &Moments::firstDraw);
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
    if (!options->history.empty()) {
        std::cerr << "velmora-bench-frame: --history works only with velmora-bench; run that "
                     "program instead\n";
        return 2;
    }
    try {
        if (options->sweep) {
            printGrowth();
            return 0;
        }
    } catch (const hostkit::HostError& error) {
        std::cerr << "velmora-bench-frame: " << error.what() << '\n';
        return 1;
    }
    registerFrames(options->count);
    // The timer queries of the software rasteriser do not count the whole time of a draw call.
    if (hostkit::usesGraphicsCard()) {
        bench::registerGpuPasses(options->count);
    }
    bench::TableReporter tables({{"The table shows the median times of a frame.",
                                  "frame | screen",
                                  {"outside GL us", "water us", "solver wait us", "before draws us",
                                   "draws us", "finish us", "frame us"}},
                                 bench::gpuPassTable()});
    try {
        benchmark::RunSpecifiedBenchmarks(options->table ? &tables : nullptr);
    } catch (const hostkit::HostError& error) {
        std::cerr << "velmora-bench-frame: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
