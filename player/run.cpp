#include "player/run.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>
#include <string>

#include "app/effect_probe.h"
#include "app/frame_clock.h"
#include "app/session.h"
#include "app/settings.h"
#include "app/size.h"
#include "desktop/failure.h"
#include "desktop/image.h"
#include "desktop/interrupt.h"
#include "hostkit/digest.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/image.h"
#include "hostkit/jni_environment.h"
#include "hostkit/water_driver.h"
#include "player/encoder.h"
#include "player/film.h"
#include "player/film_screen.h"
#include "player/inputs.h"
#include "player/progress.h"
#include "player/script.h"
#include "player/staging.h"

namespace player {

using desktop::covering;
using desktop::Failure;
using desktop::handleSignals;
using desktop::isInterrupted;
using desktop::warn;

namespace {

hostkit::GestureScript scriptOf(const Options& options, const app::Settings& settings) {
    hostkit::GestureScript script = loadScript(options);
    if (!options.scriptGiven) {
        // Only the default script adapts to the preset's pressure. A script from the command line keeps its pressures.
        scalePressures(script, settings.pressure / app::Settings{}.pressure);
    }
    if (options.seconds > 0.0) {
        const double timeScale = static_cast<double>(settings.timeScale);
        script.frames =
            std::max(1, static_cast<int>(std::lround(60.0 * timeScale * options.seconds)));
    }
    return script;
}

int framesPerSecondOf(const Options& options) {
    constexpr int gifRate = 25;  // all browsers play it
    return options.framesPerSecond > 0 ? options.framesPerSecond
           : options.format == "gif"   ? gifRate
                                       : 60;
}

/// Returns true for the file names frame-01.png, frame-02.png and so on.
bool isStillFrame(const std::string& name) {
    int place = 0;
    int length = 0;
    return std::sscanf(name.c_str(), "frame-%2d.png%n", &place, &length) == 1 &&
           static_cast<std::size_t>(length) == name.size();
}

/// Adds cells to the digest. Replaces values that are too small to be visible by zero. Such values occur in front of a
/// wave. They differ between processors, because some processors replace subnormal numbers by zero. With the
/// replacement, the digest is the same on every processor for about seventy frames. In later frames, the digests
/// differ: the tiny differences have reached the last bits of larger values.
void addCells(hostkit::Digest& digest, std::span<const float> cells) {
    constexpr float minVisible = 0x1p-60f;
    for (const float cell : cells) {
        const float visible = std::abs(cell) < minVisible ? 0.0f : cell;
        addBytes(digest, std::as_bytes(std::span(&visible, 1)));
    }
}

/// Adds the water's heights and velocities to the digest.
void addWater(hostkit::Digest& digest, const hostkit::WaterDriver& water) {
    addCells(digest, hostkit::JniEnvironment::elements(water.height));
    addCells(digest, hostkit::JniEnvironment::elements(water.velocity));
}

app::FrontEnd frontEnd(FilmScreen& screen, app::EffectProbe& probe) {
    app::FrontEnd functions;
    functions.renewContext = [&] {
        probe.forgetInk();
        screen.renewContext();
    };
    functions.cover = [](const hostkit::Image& image, app::Size size) {
        return covering(image, size.width, size.height);
    };
    functions.draw = [&](hostkit::EffectHost& host) { probe.draw(host); };
    functions.onStart = [&](app::Size size, bool hasInk) { probe.watch(size, hasInk); };
    return functions;
}

/// Plays and films `frames` frames of the session's replay. Adds the water of each frame to the digest.
void play(app::Session& session, int frames, FilmScreen& screen, const app::EffectProbe& probe,
          Film& film, hostkit::Digest& water) {
    Progress progress(frames);
    for (int frame = 0; frame < frames; ++frame) {
        session.frame(app::frameTime);
        screen.drawOver(probe);
        addWater(water, session.water());
        film.add(screen.shown());
        progress.show(frame + 1);
        if (isInterrupted()) {
            throw Failure("interrupted",
                          "frame " + std::to_string(frame + 1) + " of " + std::to_string(frames));
        }
    }
}

void printSummary(const Options& options, const Film& film, const hostkit::Digest& water,
                  const hostkit::Digest& velocity) {
    std::printf("film      %s\n", (options.out / ("film." + options.format)).c_str());
    std::printf("sheet     %s\n", (options.out / "sheet.png").c_str());
    std::printf("stills    %s\n", (options.out / "frame-NN.png").c_str());
    std::printf("frames   ");
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
    handleSignals();
    const app::Settings settings = settingsOf(options);
    const hostkit::GestureScript script = scriptOf(options, settings);
    if (!options.record.empty()) {
        warn("--record needs a window, so this file is not written", options.record.string());
    }
    const app::Size size{options.width, options.height};
    FilmScreen screen(size, options.overlays);
    app::EffectProbe probe;
    app::Session session(frontEnd(screen, probe), {});
    session.settings = settings;
    session.setBackgrounds(loadBackgrounds(options));
    session.restart(size);
    session.startReplay(script);
    Staging staging(options.out);
    Film film(staging.folder(), options.out, options.format, size, script.frames,
              settings.timeScale, framesPerSecondOf(options));
    std::fprintf(stderr, "Filming %d frames of %d x %d pixels\n", script.frames, size.width,
                 size.height);
    if (const app::Size filmed = filmSize(size, options.format); filmed != size) {
        warn("the format needs even sides, so the film has fewer pixels",
             std::to_string(filmed.width) + " x " + std::to_string(filmed.height));
    }
    hostkit::Digest water;
    play(session, script.frames, screen, probe, film, water);
    film.finish();
    staging.publish(isStillFrame);
    printSummary(options, film, water, probe.velocityDigest());
}

}  // namespace player
