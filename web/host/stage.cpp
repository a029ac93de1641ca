#include "web/host/stage.h"

#include <emscripten/emscripten.h>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <utility>

#include "app/frame_clock.h"

// clang-format off
/// The library forgets its names without deleting them, as those of a lost context. Where a script has
/// only ordered the loss, or another host follows, the context lives on and would keep what they stand for.
/// Names begin anew, since the tables have a place for every name up to the last: after the contexts',
/// which are of the same count.
EM_JS(void, dropGlObjects, (), {
    function drop(kind, names) {
        names.filter(object => object && GLctx['is' + kind](object)).forEach(object => GLctx['delete' + kind](object));
        names.length = 0;
    }
    drop('Buffer', GL.buffers);
    drop('Framebuffer', GL.framebuffers);
    drop('Program', GL.programs);
    drop('Shader', GL.shaders);
    drop('Texture', GL.textures);
    GL.counter = GL.contexts.length;
});
// clang-format on

namespace web {
namespace {

using hostkit::ScriptAction;

void applyChanges(Stage& stage) {
    if (stage.settings.waterOnly != stage.waterOnly) {
        restart(stage, stage.host->width(), stage.host->height());
    }
    app::applySettings(stage.settings, stage.cellsPerVertex, *stage.host);
}

std::vector<ScriptAction> dueActions(Stage& stage) {
    std::vector<ScriptAction> actions =
        app::inkAndBackgroundChanges(stage.settings, stage.host->look());
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

void record(Stage& stage, const ScriptAction& action) {
    if (stage.recording) {
        stage.recording->events.push_back({stage.recording->frames, action});
    }
}

std::vector<hostkit::ScriptEvent> eventsOf(Stage& stage, std::span<const ScriptAction> actions) {
    std::vector<hostkit::ScriptEvent> events;
    for (const ScriptAction& action : actions) {
        app::followAction(stage.settings, action);
        record(stage, action);
        events.push_back({0, action});
    }
    if (stage.recording) {
        ++stage.recording->frames;
    }
    return events;
}

void endHost(Stage& stage) {
    if (stage.host) {
        stage.host.reset();
        dropGlObjects();
    }
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
    endHost(stage);
    hostkit::EffectHostOptions options = app::hostOptions(stage.settings, width, height);
    options.background = stage.pictures[0];
    options.secondBackground = stage.pictures[1];
    options.water.cellsPerVertex = stage.cellsPerVertex;
    options.renewContext = dropGlObjects;
    stage.host.emplace(std::move(options));
    stage.waterOnly = stage.settings.waterOnly;
    stage.rain = {};
}

void showPicture(Stage& stage, int place, hostkit::Picture picture) {
    stage.pictures[static_cast<std::size_t>(place)] = std::move(picture);
    if (stage.host) {
        stage.host->setBackgrounds(stage.pictures[0], stage.pictures[1]);
    }
}

void renewContext(Stage& stage) {
    record(stage, hostkit::LoseContext{});
    stage.host->loseContext();
}

void runFrame(Stage& stage, std::chrono::nanoseconds elapsed) {
    applyChanges(stage);
    const std::vector<hostkit::ScriptEvent> events = eventsOf(stage, dueActions(stage));
    app::dropRain(stage.rain, *stage.host, stage.settings, elapsed);
    stage.host->frame(events, elapsed);
}

void startRecording(Stage& stage) {
    restartForGesture(stage);
    stage.recording = {stage.host->width(), stage.host->height(), 0, {}};
    // Their events are the first of the recording, so that its replay finds them too.
    stage.pending = app::forgetGestures(stage.settings);
    runFrame(stage, app::frameTime);
}

std::string finishRecording(Stage& stage) {
    hostkit::GestureScript script =
        std::exchange(stage.recording, std::nullopt).value_or(hostkit::GestureScript{});
    script.frames = std::max(script.frames, 1);
    return writeGestureScript(script);
}

void startReplay(Stage& stage) {
    restartForGesture(stage);
    stage.replay = hostkit::scaledToScreen(stage.script, stage.host->width(), stage.host->height());
    stage.replayed = 0;
}

}  // namespace web
