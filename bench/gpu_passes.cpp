#include "bench/gpu_passes.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "bench/circling_touch.h"
#include "bench/measure.h"
#include "hostkit/host_error.h"
#include "hostkit/instruments/gl_recorder.h"

namespace bench {

namespace {

constexpr int warmUpFrames = 30;

/// Number of the ink's advection passes in a frame. They are the first draw calls of a frame with ink.
constexpr std::size_t advectionsPerFrame = 4;

/// Functions of the extension GL_EXT_disjoint_timer_query.
struct TimerQueries {
    PFNGLGENQUERIESEXTPROC generate;
    PFNGLDELETEQUERIESEXTPROC remove;
    PFNGLBEGINQUERYEXTPROC begin;
    PFNGLENDQUERYEXTPROC end;
    PFNGLGETQUERYOBJECTUI64VEXTPROC result;
};

/// Finds a function of the GL context.
template <class Function>
void find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(eglGetProcAddress(name));
}

TimerQueries findTimerQueries() {
    TimerQueries found{};
    find(found.generate, "glGenQueriesEXT");
    find(found.remove, "glDeleteQueriesEXT");
    find(found.begin, "glBeginQueryEXT");
    find(found.end, "glEndQueryEXT");
    find(found.result, "glGetQueryObjectui64vEXT");
    return found;
}

bool hasTimerQueries() {
    const auto* const extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return extensions && std::string_view(extensions).find("GL_EXT_disjoint_timer_query") !=
                             std::string_view::npos;
}

void stepFrame(hostkit::EffectHost& host, int frame) {
    host.touch(circlingTouch(host, frame));
    host.step({}, hostkit::displayedFrame);
}

/// Draws a frame. Returns the GPU times of its draw calls in microseconds, in order.
std::vector<double> drawTimed(hostkit::EffectHost& host, const TimerQueries& timer) {
    std::vector<GLuint> queries;
    bool timing = false;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    recorder.inside = [&](const char* function) {
        if (std::string_view(function).starts_with("glDraw")) {
            timer.generate(1, &queries.emplace_back());
            timer.begin(GL_TIME_ELAPSED_EXT, queries.back());
            timing = true;
        }
    };
    recorder.after = [&] {
        if (timing) {
            timer.end(GL_TIME_ELAPSED_EXT);
            timing = false;
        }
    };
    host.draw();
    recorder.inside = nullptr;
    recorder.after = nullptr;
    std::vector<double> times;
    for (const GLuint query : queries) {
        std::uint64_t nanoseconds = 0;
        timer.result(query, GL_QUERY_RESULT_EXT, &nanoseconds);
        times.push_back(static_cast<double>(nanoseconds) * 1e-3);
    }
    timer.remove(static_cast<GLsizei>(queries.size()), queries.data());
    return times;
}

/// GPU times of each kind of pass, in microseconds, of all frames.
struct PassTimes {
    std::vector<double> advection;
    std::vector<double> impulse;
    std::vector<double> water;
    std::vector<double> all;
};

/// Adds the times of one frame's draw calls: the advections, the impulse if the finger moved, and the water mesh.
void addFrame(PassTimes& times, const std::vector<double>& draws) {
    double sum = 0.0;
    for (std::size_t i = 0; i < draws.size(); ++i) {
        std::vector<double>& pass = i + 1 == draws.size()    ? times.water
                                    : i < advectionsPerFrame ? times.advection
                                                             : times.impulse;
        pass.push_back(draws[i]);
        sum += draws[i];
    }
    times.all.push_back(sum);
}

void runPasses(benchmark::State& state, int width, int height, bool inkEnabled,
               float cellsPerVertex) {
    hostkit::EffectHost host({.width = width,
                              .height = height,
                              .inkEnabled = inkEnabled,
                              .water = {.cellsPerVertex = cellsPerVertex}});
    if (!hasTimerQueries()) {
        throw hostkit::HostError(
            "the GL driver has no timer queries (GL_EXT_disjoint_timer_query); unset VELMORA_GPU");
    }
    const TimerQueries timer = findTimerQueries();
    int frame = 0;
    while (frame < warmUpFrames) {
        stepFrame(host, frame++);
        host.draw();
    }
    PassTimes times;
    for (auto _ : state) {
        stepFrame(host, frame++);
        addFrame(times, drawTimed(host, timer));
    }
    if (inkEnabled) {
        state.counters["advection us"] = median(times.advection);
        state.counters["impulse us"] = median(times.impulse);
    }
    state.counters["water mesh us"] = median(times.water);
    state.counters["all draw calls us"] = median(times.all);
}

}  // namespace

void registerGpuPasses(int frames) {
    struct Screen {
        int width;
        int height;
    };
    struct Effect {
        const char* name;
        bool inkEnabled;
        float cellsPerVertex;
    };
    for (const Effect effect : {Effect{"ink", true, 1.0f},
                                {"ink, 2 cells per vertex", true, 2.0f},
                                {"water only", false, 1.0f},
                                {"water only, 2 cells per vertex", false, 2.0f}}) {
        for (const Screen screen : {Screen{1080, 1920}, {540, 960}}) {
            const std::string name = std::string("GPU: ") + effect.name + "/" +
                                     std::to_string(screen.width) + "x" +
                                     std::to_string(screen.height);
            benchmark::RegisterBenchmark(name.c_str(),
                                         [=](benchmark::State& state) {
                                             runPasses(state, screen.width, screen.height,
                                                       effect.inkEnabled, effect.cellsPerVertex);
                                         })
                ->Iterations(frames)
                ->UseRealTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
}

TableLayout gpuPassTable() {
    return {"The table shows the median times of the draw calls on the GPU.",
            "draw calls | screen",
            {"advection us", "impulse us", "water mesh us", "all draw calls us"}};
}

}  // namespace bench
