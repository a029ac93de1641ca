#include "player/window/keeper.h"

#include <cstdio>
#include <utility>

#include "app/labels.h"
#include "app/size.h"
#include "player/encoder.h"
#include "player/window/keys.h"

namespace player {

namespace fs = std::filesystem;

Keeper::Keeper(WindowSession& ofSession, Toast& withToast, const Options& options)
    : session(ofSession),
      toast(withToast),
      shots(options.shots, options.format),
      digestWanted(options.digest) {}

void Keeper::switchFilm() {
    if (filming()) {
        finishFilm();
    } else {
        filmStart = Clock::now();
        const fs::path file = shots.startFilm(session.size());
        const app::Size size = filmSize(session.size(), file.extension().string());
        const bool isSmaller = size != session.size();
        showToast(toast, "Filming " + file.string() +
                             (isSmaller ? " with " + std::to_string(size.width) + " x " +
                                              std::to_string(size.height) + " pixels"
                                        : ""));
    }
}

void Keeper::addToFilm() {
    if (filming()) {
        shots.addToFilm(session.screenshot());
    }
}

void Keeper::finishFilm() {
    if (filming()) {
        const auto film = shots.finishFilm();
        showToast(toast, film ? "Saved " + film->string() : app::sharedText("emptyVideo"));
    }
}

void Keeper::switchRecording() {
    if (session.recording()) {
        finishRecording();
    } else {
        const fs::path file = shots.createGestureFile();
        startRecording(file);
        showToast(toast, "Recording " + file.string() + app::sharedText("effectRestarted"));
    }
}

void Keeper::startRecording(const fs::path& file) {
    session.startRecording(file);
    recordingStart = Clock::now();
}

void Keeper::finishRecording() {
    if (!session.recording()) {
        return;
    }
    const fs::path file = session.recording()->file();
    printDigest();
    session.core.finishRecording();
    shots.add(file);
    recorded = file;
    showToast(toast, "Saved " + file.string() + ". Press G to replay it.");
}

void Keeper::finishRecordingForRestart(const char* reason) {
    if (session.recording() != nullptr) {
        attempt(toast, [&] {
            finishRecording();
            showToast(toast, reason + toast.line);
        });
    }
}

void Keeper::watchRecording() {
    if (session.recording() && session.recording()->hasFailed()) {
        attempt(toast, [&] { finishRecording(); });
    }
}

void Keeper::finish() {
    attempt(toast, [&] { finishFilm(); });
    attempt(toast, [&] { finishRecording(); });
}

void Keeper::takeScreenshot() {
    shotWanted = false;
    showToast(toast, "Saved " + shots.screenshot(session.screenshot()).string());
}

fs::path Keeper::savePreset(const std::string& name) {
    fs::path file = shots.preset(session.core.settings, name);
    showToast(toast, "Saved " + file.string());
    presetWithoutThumbnail = file;
    return file;
}

fs::path Keeper::renamePreset(const fs::path& preset, const std::string& name) {
    fs::path file = shots.renamePreset(preset, name);
    showToast(toast, app::sharedText("renamedTo") + name);
    return file;
}

void Keeper::deletePreset(const fs::path& preset) {
    shots.deletePreset(preset);
    showToast(toast, app::sharedText("deleted") + preset.stem().string());
}

void Keeper::addThumbnail() {
    if (!presetWithoutThumbnail.empty()) {
        shots.thumbnail(std::exchange(presetWithoutThumbnail, {}), session.screenshot());
    }
}

std::vector<Mark> Keeper::marks() const {
    std::vector<Mark> marks;
    const auto since = [](Clock::time_point start) {
        return std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start);
    };
    if (filming()) {
        marks.push_back({MarkSymbol::record, "Video", since(filmStart), filmStart, Command::film,
                         app::sharedText("stopFilming")});
    }
    if (session.recording() != nullptr) {
        marks.push_back({MarkSymbol::record, "Gesture", since(recordingStart), recordingStart,
                         Command::record, app::sharedText("stopRecording")});
    }
    return marks;
}

void Keeper::noteReplayEnd() {
    printDigest();
    showToast(toast, app::sharedText("gestureEnded"));
}

void Keeper::printFiles() const {
    for (const fs::path& file : shots.files()) {
        std::printf("saved %s\n", file.c_str());
    }
}

void Keeper::printDigest() const {
    if (digestWanted) {
        std::printf("velocity %s\n", hex(session.effectProbe().velocityDigest()).c_str());
        std::fflush(stdout);
    }
}

}  // namespace player
