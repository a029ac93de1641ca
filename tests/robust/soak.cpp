#include <GLES2/gl2.h>
#include <getopt.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <thread>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"

// Draws many frames with random gestures. The default number of frames equals half an hour of use. Measures resident
// memory, heap, file descriptors and threads of the process. After the warm-up, the numbers of files and threads must
// not change, and memory must hardly grow.

namespace {

constexpr int screenWidth = 96, screenHeight = 160;  // pixels

struct Options {
    int frames = 100'000;
    int warmUp = 10'000;
    unsigned seed = 1;
    std::string script;
};

struct Usage {
    long residentKilobytes, heapKilobytes, files, threads;
};

long entries(const char* folder) {
    using Iterator = std::filesystem::directory_iterator;
    return std::distance(Iterator(folder), Iterator());
}

Usage currentUsage() {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));  // gives the worker time to end
    long pages = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    const struct mallinfo2 heap = mallinfo2();
    return {resident * (sysconf(_SC_PAGESIZE) / 1024),
            static_cast<long>((heap.uordblks + heap.hblkhd) / 1024), entries("/proc/self/fd"),
            entries("/proc/self/task")};
}

void print(int frame, const Usage& usage) {
    std::printf("%8d frames  %7ld kB resident  %6ld kB heap  %3ld files  %3ld threads\n", frame,
                usage.residentKilobytes, usage.heapKilobytes, usage.files, usage.threads);
    std::fflush(stdout);
}

/// A finger with random gestures: it taps, drags at all speeds, jumps, pauses, and is cancelled.
class RandomFinger {
public:
    explicit RandomFinger(unsigned seed) : random(seed) {}

    void actOn(hostkit::EffectHost& host) {
        if (left-- <= 0) {
            begin(host);
        } else if (speed > 0) {
            x = std::clamp(x + between(-speed, speed), -20.0, screenWidth + 20.0);
            y = std::clamp(y + between(-speed, speed), -20.0, screenHeight + 20.0);
            host.touch({hostkit::TouchAction::move, x, y, static_cast<float>(between(0, 1.2))});
        }
    }

private:
    double between(double least, double most) {
        return std::uniform_real_distribution(least, most)(random);
    }
    void begin(hostkit::EffectHost& host) {
        using hostkit::TouchAction;
        host.touch({random() % 8 ? TouchAction::up : TouchAction::cancel, x, y, 0});
        if (random() % 16 == 0) {
            host.clearInk();
        }
        constexpr double speeds[] = {0, 0, 1, 5, 30};
        speed = speeds[random() % std::size(speeds)];
        left = static_cast<int>(random() % 60);
        x = between(0, screenWidth);
        y = between(0, screenHeight);
        host.touch({TouchAction::down, x, y, static_cast<float>(between(0, 1))});
    }

    std::minstd_rand random;
    double x = 0, y = 0, speed = 0;
    int left = 0;
};

/// Returns true if the process has not grown. Some pages of stacks and of the rasteriser are first used long after the
/// warm-up, so a small growth is allowed. A leak of one byte per frame soon exceeds this limit.
bool isFlat(const Usage& start, const Usage& end) {
    constexpr int lateHeap = 16, lateResident = 512;  // kilobytes
    return end.heapKilobytes <= start.heapKilobytes + lateHeap &&
           end.residentKilobytes <= start.residentKilobytes + lateResident &&
           end.files == start.files && end.threads == start.threads;
}

int soak(const Options& options) {
    // The water grid has few cells, so that the many frames of this test are fast.
    hostkit::EffectHost host(
        {.width = screenWidth, .height = screenHeight, .water = {.shortSideCells = 16}});
    hostkit::GestureScript script;
    if (!options.script.empty()) {
        script =
            scaledToScreen(hostkit::loadGestureScript(options.script), screenWidth, screenHeight);
    }
    RandomFinger finger(options.seed);
    Usage warm{}, now{};
    for (int frame = 0; frame <= options.frames; ++frame) {
        // Draw only into a corner of each target. A software rasteriser would otherwise spend most of its time on the
        // large ink targets. Each frame sets this state, because a script can replace the context.
        glEnable(GL_SCISSOR_TEST);
        glScissor(0, 0, screenWidth, screenHeight);
        const int ofTurn = frame % (script.frames + 600);
        if (ofTurn < script.frames) {
            host.frame(eventsOfFrame(script, ofTurn));
        } else {
            finger.actOn(host);
            host.frame();
        }
        if (frame == options.warmUp || frame == options.frames || frame % 10'000 == 0) {
            now = currentUsage();
            print(frame, now);
        }
        warm = frame == options.warmUp ? now : warm;
    }
    std::puts(isFlat(warm, now) ? "the process did not grow after the warm-up"
                                : "error: the process grew after the warm-up; look for a leak");
    return isFlat(warm, now) ? 0 : 1;
}

}  // namespace

// This program parses its options with getopt, because the player's option library would slow the compilation.
int main(int count, char** arguments) {
    constexpr option names[] = {{"frames", required_argument, nullptr, 'f'},
                                {"warm-up", required_argument, nullptr, 'w'},
                                {"seed", required_argument, nullptr, 's'},
                                {"script", required_argument, nullptr, 'g'},
                                {}};
    Options options;
    for (int name; (name = getopt_long(count, arguments, "", names, nullptr)) != -1;) {
        switch (name) {
            case 'f':
                options.frames = std::stoi(optarg);
                break;
            case 'w':
                options.warmUp = std::stoi(optarg);
                break;
            case 's':
                options.seed = static_cast<unsigned>(std::stoul(optarg));
                break;
            case 'g':
                options.script = optarg;
                break;
            default:
                std::puts(
                    "usage: velmora-soak [--frames N] [--warm-up N] [--seed N] [--script FILE]\n"
                    "  --frames   number of frames to draw\n"
                    "  --warm-up  number of frames before the first measurement\n"
                    "  --seed     seed of the random gestures\n"
                    "  --script   gesture script to play between the random gestures");
                return 2;
        }
    }
    return soak(options);
}
