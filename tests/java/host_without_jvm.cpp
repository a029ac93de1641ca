// Plays a gesture as the host on a JVM does, with the library called directly, and writes raw
// pixels. A program of its own, since the library keeps its state for as long as the process lives.
// Usage: hostWithoutJvm SCRIPT FRAMES FOLDER

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "hostkit/effect_host.h"

int main(int, char** arguments) {
    const int frames = std::atoi(arguments[2]);
    const std::filesystem::path folder = arguments[3];
    std::filesystem::create_directories(folder);
    hostkit::EffectHostOptions options;
    options.width = 270;
    options.height = 480;
    const auto script =
        scaledToScreen(hostkit::loadGestureScript(arguments[1]), options.width, options.height);
    hostkit::EffectHost host(options);
    for (int frame = 0; frame < frames; ++frame) {
        host.frame(eventsOfFrame(script, frame));
        if ((frame + 1) % 10 == 0) {
            char name[32];
            std::snprintf(name, sizeof name, "frame-%04d.rgba", frame + 1);
            const auto pixels = host.pixels();
            std::ofstream(folder / name, std::ios::binary)
                .write(reinterpret_cast<const char*>(pixels.data()),
                       static_cast<std::streamsize>(pixels.size()));
        }
    }
    std::printf("%d frames played, %s: %s\n", frames,
                host.inkShown() ? "ink shown" : "no ink shown", folder.c_str());
}
