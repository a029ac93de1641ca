#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "app/rain.h"
#include "app/settings.h"
#include "hostkit/effect_host.h"

namespace web {

/// The effect on a page's canvas: a host with the settings applied, and what is recorded or
/// replayed of its gestures. Everything runs in the page's one thread, with the canvas' context
/// current.
struct Stage {
    /// Applied with the next frame.
    app::Settings settings;
    /// Of the drawn mesh, so that a slow machine draws fewer triangles; the water itself stays.
    int cellsPerVertex = 1;
    /// Picture, second picture; empty ones are replaced by a test picture.
    std::array<hostkit::Picture, 2> pictures;
    std::optional<hostkit::EffectHost> host;
    /// Whether that host was made for water only.
    bool waterOnly = false;
    app::Rain rain;

    /// What is to happen with the next frame.
    std::vector<hostkit::ScriptAction> pending;
    std::optional<hostkit::GestureScript> recording;
    /// The script to be played next.
    hostkit::GestureScript script;
    /// The one that is played, for the screen's size; `replayed` frames of it have run.
    std::optional<hostkit::GestureScript> replay;
    int replayed = 0;
};

/// From the start, for a canvas of that size: calm water, no ink.
void restart(Stage& stage, int width, int height);
/// Pictures are cropped to the screen's shape by the page.
void showPicture(Stage& stage, int place, hostkit::Picture picture);

/// What the context held is set up anew in the one that follows it; a recording has that too.
void renewContext(Stage& stage);
/// One frame of the effect: draws it.
void runFrame(Stage& stage, std::chrono::nanoseconds elapsed);

/// Restarts, and keeps from there what happens, so that a replay finds the same.
void startRecording(Stage& stage);
/// The recording as a gesture script.
std::string finishRecording(Stage& stage);
/// Restarts and plays the script.
void startReplay(Stage& stage);

}  // namespace web
