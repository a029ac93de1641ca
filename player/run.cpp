#include "player/run.h"

#include <cmath>
#include <cstdio>
#include <span>
#include <string>
#include <utility>

#include "hostkit/effect_host.h"
#include "player/digest.h"
#include "player/effect_tap.h"
#include "player/failure.h"
#include "player/film.h"
#include "player/film_screen.h"
#include "player/frame_time.h"
#include "player/interrupt.h"
#include "player/picture.h"
#include "player/preset.h"
#include "player/progress.h"
#include "player/rain.h"
#include "player/settings.h"
#include "player/staging.h"

namespace player {
namespace {

hostkit::EffectHostOptions hostOptions(const Options& options, const Settings& settings) {
    hostkit::EffectHostOptions host;
    host.water = waterOf(settings);
    applyLook(settings, host.look);
    host.look.ink = inkOf(settings);
    host.look.useSecondBackground = settings.secondBackground;
    host.width = options.width;
    host.height = options.height;
    host.inkEnabled = !settings.waterOnly;
    host.background = loadPicture(options.picture, options.width, options.height);
    host.secondBackground = loadPicture(options.second, options.width, options.height);
    return host;
}

hostkit::GestureScript scriptOf(const Options& options) {
    hostkit::GestureScript script = hostkit::scaledToScreen(
        hostkit::loadGestureScript(options.script), options.width, options.height);
    script.frames = options.frames > 0 ? options.frames : script.frames;
    return script;
}

/// Cells as far as anyone could see them: before a wave run numbers so small that processors
/// differ, of which some take the smallest for zero.
void addCells(Digest& digest, std::span<const float> cells) {
    constexpr float leastSeen = 0x1p-60f;
    for (const float cell : cells) {
        const float seen = std::abs(cell) < leastSeen ? 0.0f : cell;
        addBytes(digest, std::as_bytes(std::span(&seen, 1)));
    }
}

/// Adds heights and velocities.
void addWater(Digest& digest, const hostkit::WaterDriver& water) {
    addCells(digest, hostkit::JniEnvironment::elements(water.height));
    addCells(digest, hostkit::JniEnvironment::elements(water.velocity));
}

void play(hostkit::EffectHost& host, FilmScreen& screen, EffectTap& tap, const Settings& settings,
          const hostkit::GestureScript& script, Film& film, Digest& water) {
    Rain rain;
    Progress progress = startProgress(script.frames);
    for (int frame = 0; frame < script.frames; ++frame) {
        fall(rain, host, settings, frameTime);
        host.step(hostkit::eventsOfFrame(script, frame), frameTime);
        tap.draw(host);
        screen.drawOver(tap);
        addWater(water, host.water());
        film.add(screen.shown());
        showProgress(progress, frame + 1);
        if (isInterrupted()) {
            throw Failure("interrupted", "frame " + std::to_string(frame + 1) + " of " +
                                             std::to_string(script.frames));
        }
    }
}

void tell(const Options& options, const Film& film, const Digest& water, const Digest& velocity) {
    std::printf("film      %s\n", (options.out / "film.mp4").c_str());
    std::printf("sheet     %s\n", (options.out / "sheet.png").c_str());
    std::printf("pictures  %s\n", (options.out / "frame-NN.png").c_str());
    std::printf("of frames");
    for (const int frame : film.stills()) {
        std::printf(" %d", frame);
    }
    std::printf("\n");
    if (options.digest) {
        std::printf("water %s\nvelocity %s\n", hex(water).c_str(), hex(velocity).c_str());
    }
}

}  // namespace

void run(const Options& options) {
    takeSignals();
    const hostkit::GestureScript script = scriptOf(options);
    const Settings settings = startSettings(options);
    hostkit::EffectHostOptions chosen = hostOptions(options, settings);
    const Size size{options.width, options.height};
    FilmScreen screen(size, options.overlays);
    EffectTap tap;
    chosen.renewContext = [&] {
        tap.forgetInk();
        screen.renewContext();
    };
    hostkit::EffectHost host(std::move(chosen));
    tap.watch(size, !settings.waterOnly);
    Staging staging(options.out);
    Film film(staging.folder(), size.width, size.height, script.frames);
    Digest water;
    play(host, screen, tap, settings, script, film, water);
    film.finish();
    staging.publish();
    tell(options, film, water, tap.velocityDigest());
}

}  // namespace player
