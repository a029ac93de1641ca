#include "player/run.h"

#include <cmath>
#include <cstdio>
#include <span>
#include <string>
#include <utility>

#include "app/backgrounds.h"
#include "app/frame_clock.h"
#include "app/rain.h"
#include "app/settings.h"
#include "app/size.h"
#include "desktop/failure.h"
#include "desktop/image.h"
#include "desktop/interrupt.h"
#include "hostkit/digest.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/instruments/effect_probe.h"
#include "hostkit/jni_environment.h"
#include "hostkit/water_driver.h"
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

hostkit::EffectHostOptions hostOf(const Options& options, const app::Settings& settings) {
    hostkit::EffectHostOptions host = app::hostOptions(settings, options.width, options.height);
    const app::Backgrounds backgrounds = loadBackgrounds(options);
    host.background = covering(backgrounds.first, options.width, options.height);
    host.secondBackground = covering(backgrounds.second, options.width, options.height);
    return host;
}

hostkit::GestureScript scriptOf(const Options& options, const app::Settings& settings) {
    hostkit::GestureScript script =
        hostkit::scaledToScreen(loadScript(options), options.width, options.height);
    if (!options.scriptGiven) {
        // Only the default script adapts to the preset's pressure. A named script keeps its pressures.
        scalePressures(script, settings.pressure / app::Settings{}.pressure);
    }
    return script;
}

/// Returns true for the file names frame-01.png, frame-02.png and so on.
bool isStillFrame(const std::string& name) {
    int place = 0;
    int length = 0;
    return std::sscanf(name.c_str(), "frame-%2d.png%n", &place, &length) == 1 &&
           static_cast<std::size_t>(length) == name.size();
}

/// Adds cells to the digest and counts invisibly small values as zero. Such values run ahead of a wave, and processors
/// that flush subnormals give other values there. The digest is therefore portable for about seventy frames. Later
/// the difference reaches the last bits of larger values.
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

void play(hostkit::EffectHost& host, FilmScreen& screen, hostkit::EffectProbe& probe,
          const app::Settings& settings, const hostkit::GestureScript& script, Film& film,
          hostkit::Digest& water) {
    app::Rain rain;
    Progress progress = startProgress(script.frames);
    for (int frame = 0; frame < script.frames; ++frame) {
        app::dropRain(rain, host, settings, app::frameTime);
        host.step(hostkit::eventsOfFrame(script, frame), app::frameTime);
        probe.draw(host);
        screen.drawOver(probe);
        addWater(water, host.water());
        film.add(screen.shown());
        showProgress(progress, frame + 1);
        if (isInterrupted()) {
            throw Failure("interrupted", "frame " + std::to_string(frame + 1) + " of " +
                                             std::to_string(script.frames));
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
    hostkit::EffectHostOptions chosen = hostOf(options, settings);
    const app::Size size{options.width, options.height};
    FilmScreen screen(size, options.overlays);
    hostkit::EffectProbe probe;
    chosen.renewContext = [&] {
        probe.forgetInk();
        screen.renewContext();
    };
    hostkit::EffectHost host(std::move(chosen));
    probe.watch(size.width, size.height, !settings.waterOnly);
    Staging staging(options.out);
    Film film(staging.folder(), options.format, size, script.frames, settings.timeScale);
    std::fprintf(stderr,
                 "Filming %d frames of %d x %d pixels. This takes one or two minutes without a "
                 "graphics card.\n",
                 script.frames, size.width, size.height);
    hostkit::Digest water;
    play(host, screen, probe, settings, script, film, water);
    film.finish();
    staging.publish(isStillFrame);
    printSummary(options, film, water, probe.velocityDigest());
}

}  // namespace player
