#include "player/window/window_session.h"

#include <ratio>
#include <utility>

#include "app/backgrounds.h"
#include "app/size.h"
#include "desktop/image.h"
#include "hostkit/effect_host.h"
#include "player/window/screen.h"

namespace player {

using desktop::covering;
using desktop::readFrame;

namespace {

using std::chrono::steady_clock;

float milliseconds(steady_clock::duration time) {
    return std::chrono::duration<float, std::milli>(time).count();
}

}  // namespace

WindowSession::WindowSession(Screen& onScreen, const app::Settings& settings,
                             app::Backgrounds backgrounds)
    : core(frontEnd(), app::Clock::now()), screen(onScreen) {
    core.settings = settings;
    core.setBackgrounds(std::move(backgrounds));
    resize();
}

app::FrontEnd WindowSession::frontEnd() {
    app::FrontEnd functions;
    functions.renewContext = [this] {
        isOutdated = true;
        probe.forgetInk();
        screen.renewContext();
    };
    functions.cover = [](const hostkit::Image& image, app::Size size) {
        return covering(image, size.width, size.height);
    };
    functions.draw = [this](hostkit::EffectHost& host) { draw(host); };
    functions.onStart = [this](app::Size size, bool hasInk) { probe.watch(size, hasInk); };
    functions.onRecorded = [this](const hostkit::ScriptEvent& event) { recordingFile->add(event); };
    functions.onRecordingEnd = [this](const hostkit::GestureScript& script) {
        const RecordingFile file = *std::exchange(recordingFile, std::nullopt);
        file.finish(script);
    };
    return functions;
}

void WindowSession::resize() {
    core.resize(screen.window().pixels());
}

void WindowSession::showBackground(hostkit::Image image) {
    isOutdated = true;
    core.showBackground(std::move(image));
}

void WindowSession::frame(std::chrono::nanoseconds elapsed) {
    frameStart = steady_clock::now();
    core.frame(elapsed);
    isOutdated = false;
}

void WindowSession::draw(hostkit::EffectHost& host) {
    const auto start = steady_clock::now();
    probe.draw(host);
    const auto end = steady_clock::now();
    const auto ready = probe.moments().solverDone.value_or(start);
    lastTimes = {milliseconds(start - frameStart), milliseconds(ready - start),
                 milliseconds(end - ready)};
}

void WindowSession::startRecording(const std::filesystem::path& file) {
    core.finishRecording();
    recordingFile.emplace(file, size());
    try {
        core.startRecording();
    } catch (...) {
        if (!core.isRecording()) {
            recordingFile.reset();
        }
        throw;
    }
}

hostkit::Image WindowSession::screenshot() const {
    return readFrame(size());
}

}  // namespace player
