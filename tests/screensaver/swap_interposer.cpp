// Functions that replace those of EGL and of the C library when the loader preloads this library. They let a test count
// frames, lose the context, and speed the clock up. These variables control them:
//   FRAMES_FILE      file that gets a line with frame number and resident memory in kB after every 10 frames
//   LOSE_AT          number of the frame that loses the context
//   SERVER           process of the display server, which frame 20 kills before it is presented
//   CLOCK_FACTOR     factor of the speed of the steady clock

#include <EGL/egl.h>
#include <dlfcn.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

long variable(const char* name, long fallback) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::strtol(value, nullptr, 10) : fallback;
}

/// Returns the replaced function.
template <class Function>
Function* original(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

long residentKilobytes() {
    long pages = 0;
    if (FILE* status = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(status, "%*d %ld", &pages) != 1) {
            pages = 0;
        }
        std::fclose(status);
    }
    return pages * sysconf(_SC_PAGESIZE) / 1024;
}

long frame = 0;
bool lost = false;

}  // namespace

extern "C" EGLBoolean eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    static const auto swap = original(&eglSwapBuffers, "eglSwapBuffers");
    static const char* const file = std::getenv("FRAMES_FILE");
    static const long losing = variable("LOSE_AT", -1);
    static const auto server = static_cast<pid_t>(variable("SERVER", 0));
    if (++frame % 10 == 0 && file != nullptr) {
        if (FILE* frames = std::fopen(file, "a")) {
            std::fprintf(frames, "%ld %ld\n", frame, residentKilobytes());
            std::fclose(frames);
        }
    }
    if (frame == 20 && server > 0) {
        kill(server, SIGKILL);
        // The connection breaks some time after the X server is killed. Repeat the swap, so that one call meets the
        // broken connection. This call must not hang.
        for (int turn = 0; turn < 1000; ++turn) {
            swap(display, surface);
        }
    }
    lost = frame == losing;
    return lost ? EGL_FALSE : swap(display, surface);
}

extern "C" EGLint eglGetError() {
    static const auto error = original(&eglGetError, "eglGetError");
    return lost ? EGL_CONTEXT_LOST : error();
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) {
    static const auto get = original(&clock_gettime, "clock_gettime");
    static const long factor = variable("CLOCK_FACTOR", 1);
    const int result = get(clock, time);
    if (clock == CLOCK_MONOTONIC) {
        constexpr long second = 1'000'000'000;
        const long nanoseconds = time->tv_nsec * factor;
        time->tv_sec = time->tv_sec * factor + nanoseconds / second;
        time->tv_nsec = nanoseconds % second;
    }
    return result;
}
