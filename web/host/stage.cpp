#include "web/host/stage.h"

#include <emscripten/emscripten.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

// clang-format off
/// The library forgets its names without deleting them, as those of a lost context. Where a script
/// has only ordered the loss the context lives on, and would keep what they stand for.
EM_JS(void, dropGlObjects, (), {
    function drop(kind, names) {
        names.filter(object => object && GLctx['is' + kind](object)).forEach(object => GLctx['delete' + kind](object));
        names.fill(null);
    }
    drop('Buffer', GL.buffers);
    drop('Framebuffer', GL.framebuffers);
    drop('Program', GL.programs);
    drop('Shader', GL.shaders);
    drop('Texture', GL.textures);
});
// clang-format on

namespace web {
namespace {

using hostkit::ScriptAction;
using hostkit::Touch;
using hostkit::TouchAction;

constexpr std::chrono::nanoseconds frameTime{16'666'667};

void applySettings(Stage& stage) {
    hostkit::EffectHost& host = *stage.host;
    if (stage.settings.waterOnly != stage.applied.waterOnly) {
        restart(stage, host.width(), host.height());
    }
    if (stage.settings.meshDetail != stage.applied.meshDetail) {
        stage.host->replaceWater(waterOf(stage.settings));
    }
    stage.host->water().settings = waterOf(stage.settings);
    applyLook(stage.settings, stage.host->look());
    stage.applied = stage.settings;
}

/// Colour and background that the script sets become the settings'.
void follow(player::Settings& settings, const ScriptAction& action) {
    if (const auto* ink = std::get_if<hostkit::InkColor>(&action)) {
        settings.ink = {ink->red, ink->green, ink->blue};
    } else if (const auto* second = std::get_if<hostkit::SecondBackground>(&action)) {
        settings.secondBackground = second->on;
    }
}

std::vector<ScriptAction> dueActions(Stage& stage) {
    std::vector<ScriptAction> actions;
    const hostkit::Look& look = stage.host->look();
    if (inkOf(stage.settings) != look.ink) {
        actions.emplace_back(inkOf(stage.settings));
    }
    if (stage.settings.secondBackground != look.useSecondBackground) {
        actions.emplace_back(hostkit::SecondBackground{stage.settings.secondBackground});
    }
    if (stage.replay) {
        for (const auto& event : eventsOfFrame(*stage.replay, stage.replayed)) {
            actions.push_back(event.action);
        }
        if (++stage.replayed >= stage.replay->frames) {
            stage.replay.reset();
        }
    }
    std::move(stage.pending.begin(), stage.pending.end(), std::back_inserter(actions));
    stage.pending.clear();
    return actions;
}

std::vector<hostkit::ScriptEvent> eventsOf(Stage& stage, std::vector<ScriptAction> actions) {
    std::vector<hostkit::ScriptEvent> events;
    for (ScriptAction& action : actions) {
        follow(stage.settings, action);
        if (stage.recording) {
            stage.recording->events.push_back({stage.recording->frames, action});
        }
        events.push_back({0, std::move(action)});
    }
    stage.applied = stage.settings;
    if (stage.recording) {
        ++stage.recording->frames;
    }
    return events;
}

/// The library's random numbers from their start, so that a gesture is the same each time.
void restartForGesture(Stage& stage) {
    restart(stage, stage.host->width(), stage.host->height());
    std::srand(1);
}

}  // namespace

void restart(Stage& stage, int width, int height) {
    stage.recording.reset();
    stage.replay.reset();
    stage.pending.clear();
    stage.host.reset();
    hostkit::EffectHostOptions options;
    options.width = width;
    options.height = height;
    options.inkEnabled = !stage.settings.waterOnly;
    options.background = stage.pictures[0];
    options.secondBackground = stage.pictures[1];
    options.water = waterOf(stage.settings);
    options.renewContext = dropGlObjects;
    applyLook(stage.settings, options.look);
    options.look.ink = inkOf(stage.settings);
    options.look.useSecondBackground = stage.settings.secondBackground;
    stage.host.emplace(std::move(options));
    stage.applied = stage.settings;
    stage.rain = {};
}

void showPicture(Stage& stage, int place, hostkit::Picture picture) {
    stage.pictures[static_cast<std::size_t>(place)] = std::move(picture);
    if (stage.host) {
        stage.host->setBackgrounds(stage.pictures[0], stage.pictures[1]);
    }
}

void renewContext(Stage& stage) {
    stage.host->loseContext();
}

void runFrame(Stage& stage, std::chrono::nanoseconds elapsed) {
    applySettings(stage);
    const std::vector<hostkit::ScriptEvent> events = eventsOf(stage, dueActions(stage));
    fall(stage.rain, *stage.host, stage.settings, elapsed);
    stage.host->frame(events, elapsed);
}

void startRecording(Stage& stage) {
    restartForGesture(stage);
    stage.recording = {stage.host->width(), stage.host->height(), 0, {}};
    // Their events are the first of the recording, so that its replay finds them too.
    stage.pending = forgetGestures(stage.settings);
    runFrame(stage, frameTime);
}

std::string finishRecording(Stage& stage) {
    hostkit::GestureScript script =
        std::exchange(stage.recording, std::nullopt).value_or(hostkit::GestureScript{});
    script.frames = std::max(script.frames, 1);
    return writeGestureScript(script);
}

void startReplay(Stage& stage, const std::string& text, const std::string& name) {
    hostkit::GestureScript script = hostkit::scaledToScreen(
        hostkit::parseGestureScript(text, name), stage.host->width(), stage.host->height());
    restartForGesture(stage);
    stage.replay = std::move(script);
    stage.replayed = 0;
}

}  // namespace web
