#include "player/run.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <utility>

#include "hostkit/effect_host.h"
#include "hostkit/gl_recorder.h"
#include "player/digest.h"
#include "player/failure.h"
#include "player/film.h"
#include "player/picture.h"
#include "player/preset.h"
#include "player/progress.h"
#include "player/rain.h"
#include "player/settings.h"
#include "player/staging.h"

namespace player {
namespace {

using hostkit::Picture;

struct Digests {
    /// Heights and velocities of the water after each frame.
    Digest water;
    /// The bytes of every velocity texture.
    Digest velocity;
};

volatile std::sig_atomic_t interrupted = 0;

/// Lets the run clean up after Ctrl-C, and after an ffmpeg that dies while it is fed.
void takeSignals() {
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    std::signal(SIGPIPE, SIG_IGN);
}

hostkit::EffectHostOptions hostOptions(const Options& options, const Settings& settings) {
    hostkit::EffectHostOptions host;
    if (!options.preset.empty()) {
        host.water = waterOf(settings);
        applyLook(settings, host.look);
        host.look.ink = inkOf(settings);
        host.look.useSecondBackground = settings.secondBackground;
    }
    host.width = options.width;
    host.height = options.height;
    host.inkEnabled = !settings.waterOnly;
    host.background = loadPicture(options.picture, options.width, options.height);
    host.secondBackground = loadPicture(options.second, options.width, options.height);
    return host;
}

/// Collects the velocity textures from here on: uploads of the size of the solver's grid.
void tapVelocity(const Options& options, Digest& digest) {
    const int columns = options.width / 12;
    const int rows = options.height / 12;
    hostkit::glRecorder().textureUpload = [=, &digest](int width, int height,
                                                       std::span<const std::uint8_t> bytes) {
        if (width == columns && height == rows) {
            addBytes(digest, std::as_bytes(bytes));
        }
    };
}

void addWater(Digest& digest, const hostkit::WaterDriver& water) {
    addBytes(digest, std::as_bytes(hostkit::JniEnvironment::elements(water.height)));
    addBytes(digest, std::as_bytes(hostkit::JniEnvironment::elements(water.velocity)));
}

/// What the screen shows; its alpha channel is not part of that.
Picture screen(const hostkit::EffectHost& host) {
    Picture picture{host.width(), host.height(), host.pixels()};
    for (std::size_t alpha = 3; alpha < picture.rgba.size(); alpha += 4) {
        picture.rgba[alpha] = 255;
    }
    return picture;
}

void play(hostkit::EffectHost& host, const Settings& settings, const hostkit::GestureScript& script,
          int frameCount, Film& film, Digests& digests) {
    constexpr std::chrono::nanoseconds frameTime(16'666'667);
    Rain rain;
    Progress progress = startProgress(frameCount);
    for (int frame = 0; frame < frameCount; ++frame) {
        fall(rain, host, settings, frameTime);
        host.frame(hostkit::eventsOfFrame(script, frame), frameTime);
        addWater(digests.water, host.water());
        film.add(screen(host));
        showProgress(progress, frame + 1);
        if (interrupted != 0) {
            throw Failure("interrupted", "frame " + std::to_string(frame + 1) + " of " +
                                             std::to_string(frameCount));
        }
    }
}

void tell(const Options& options, const Film& film, const Digests& digests) {
    std::printf("film      %s\n", (options.out / "film.mp4").c_str());
    std::printf("sheet     %s\n", (options.out / "sheet.png").c_str());
    std::printf("pictures  %s\n", (options.out / "frame-NN.png").c_str());
    std::printf("of frames");
    for (const int frame : film.stills()) {
        std::printf(" %d", frame);
    }
    std::printf("\n");
    if (options.digest) {
        std::printf("water %s\nvelocity %s\n", hex(digests.water).c_str(),
                    hex(digests.velocity).c_str());
    }
}

}  // namespace

void run(const Options& options) {
    takeSignals();
    const hostkit::GestureScript script = hostkit::scaledToScreen(
        hostkit::loadGestureScript(options.script), options.width, options.height);
    const int frameCount = options.frames > 0 ? options.frames : script.frames;
    const Settings settings = startSettings(options);
    hostkit::EffectHost host(hostOptions(options, settings));
    Staging staging(options.out);
    Film film(staging.folder(), options.width, options.height, frameCount);
    Digests digests;
    tapVelocity(options, digests.velocity);
    play(host, settings, script, frameCount, film, digests);
    film.finish();
    staging.publish();
    tell(options, film, digests);
}

}  // namespace player
