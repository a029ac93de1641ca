#include "player/window/window_player.h"

#include <SDL2/SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "player/preset.h"
#include "player/window/attract.h"
#include "player/window/finger.h"
#include "player/window/frame_clock.h"
#include "player/window/overlays.h"
#include "player/window/panel.h"
#include "player/window/screen.h"
#include "player/window/session.h"
#include "player/window/shots.h"

namespace player {
namespace {

namespace fs = std::filesystem;
using Clock = FrameClock::Clock;
using namespace std::chrono_literals;

constexpr Size phone{540, 960};
constexpr std::size_t graphFrames = 120;
constexpr auto noticeTime = 4s;
/// A window that is being resized rests for this long before the effect is set up anew.
constexpr auto resizeRest = 150ms;
/// ImGui answers an event in the frame after it, and fades.
constexpr int redrawsAfterEvent = 3;

volatile std::sig_atomic_t interrupted = 0;

/// A script that is played.
struct Replay {
    hostkit::GestureScript script;
    int frame = 0;
};

std::optional<Replay> startReplay(const Options& options) {
    if (!options.scriptGiven) {
        return std::nullopt;
    }
    Replay replay{hostkit::loadGestureScript(options.script), 0};
    replay.script.frames = options.frames > 0 ? options.frames : replay.script.frames;
    return replay;
}

Size startSize(const Options& options, const std::optional<Replay>& replay) {
    if (options.sizeGiven) {
        return {options.width, options.height};
    }
    const bool fits =
        replay && replay->script.screenWidth <= 1280 && replay->script.screenHeight <= 1000;
    return fits ? Size{replay->script.screenWidth, replay->script.screenHeight} : phone;
}

struct ViewSwitch {
    Command command;
    bool View::*state;
};
constexpr ViewSwitch viewSwitches[] = {
    {Command::help, &View::help},      {Command::panel, &View::panel},
    {Command::pause, &View::paused},   {Command::velocityOverlay, &View::velocity},
    {Command::inkOverlay, &View::ink},
};

class WindowPlayer {
public:
    explicit WindowPlayer(const Options& chosen)
        : options(chosen),
          replay(player::startReplay(chosen)),
          screen(startSize(chosen, replay)),
          session(screen, startSettings(chosen), chosen.picture, chosen.second),
          shots(chosen.shots) {
        attract.on = !options.noAttract;
        if (replay) {
            session.startReplay();
        } else if (!options.record.empty()) {
            session.startRecording(options.record);
        }
        say("F1 lists the keys, Tab opens the panel");
    }

    void run() {
        try {
            while (!leaving && interrupted == 0) {
                turn();
            }
        } catch (...) {
            attempt([&] { finishFilm(); });  // else it would be lost
            throw;
        }
        finishFilm();
        stopRecording();
    }

private:
    void turn() {
        waitForWork();
        takeEvents();
        runCommands();
        followSize();
        play();
        present();
    }

    // Waiting and events

    bool active() const { return !view.paused && (replay || attract.runs() || !session.calm()); }

    void waitForWork() {
        const auto now = Clock::now();
        std::chrono::nanoseconds wait = 250ms;
        if (active()) {
            wait = clock.untilNext(now, session.settings.timeScale);
        } else {
            clock.skip(now);
        }
        const bool redraw = redraws > 0 || stepWanted;
        wait = redraw ? std::min<std::chrono::nanoseconds>(wait, 10ms) : wait;
        const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(wait);
        SDL_WaitEventTimeout(nullptr, std::max(1, static_cast<int>(whole.count())));
    }

    void takeEvents() {
        for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
            ImGui_ImplSDL2_ProcessEvent(&event);
            redraws = redrawsAfterEvent;
            take(event);
        }
    }

    void take(const SDL_Event& event) {
        const ImGuiIO& io = ImGui::GetIO();
        const bool pointer = event.type >= SDL_MOUSEMOTION && event.type <= SDL_FINGERMOTION;
        if (event.type == SDL_QUIT) {
            leaving = true;
        } else if (event.type == SDL_KEYDOWN && event.key.repeat == 0 && !io.WantTextInput) {
            pressKey(event.key.keysym.sym);
        } else if (event.type == SDL_DROPFILE) {
            dropPicture(event.drop.file);
        } else if (event.type == SDL_WINDOWEVENT &&
                   event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED) {
            resizedAt = Clock::now();
        }
        if (!pointer || finger.pressed || !io.WantCaptureMouse) {
            feed(finger, event, screen.window(), session.settings.pressure);
        }
        if (finger.pressed) {
            attract.userCame(true);
        }
    }

    void pressKey(int code) {
        attract.userCame(false);
        for (const Key& key : keys()) {
            if (key.code == code) {
                commands.push_back(key.command);
            }
        }
    }

    // Commands

    void runCommands() {
        for (const Command command : std::exchange(commands, {})) {
            attempt([&] { run(command); });
        }
        if (!chosenPreset.empty()) {
            attempt([&] { session.settings = loadPreset(std::exchange(chosenPreset, {})); });
        }
        view.attract = attract.on;
        view.filming = shots.filming();
        view.recording = session.recording().has_value();
    }

    void run(Command command) {
        redraws = redrawsAfterEvent;
        for (const ViewSwitch& one : viewSwitches) {
            if (one.command == command) {
                view.*one.state = !(view.*one.state);
                return;
            }
        }
        if (!changeEffect(command)) {
            keepSomething(command);
        }
    }

    bool changeEffect(Command command) {
        Settings& settings = session.settings;
        if (command == Command::attract) {
            attract.on = !attract.on;
        } else if (command == Command::step) {
            view.paused = stepWanted = true;
        } else if (command == Command::clearInk) {
            actions.emplace_back(hostkit::ClearInk{});
        } else if (command == Command::loseContext) {
            actions.emplace_back(hostkit::LoseContext{});
        } else if (command == Command::secondBackground) {
            settings.secondBackground = !settings.secondBackground;
        } else if (command == Command::waterOnly) {
            settings.waterOnly = !settings.waterOnly;
        } else if (command == Command::nextPreset) {
            showNextPreset();
        } else {
            return false;
        }
        return true;
    }

    void keepSomething(Command command) {
        if (command == Command::screenshot) {
            shooting = true;
        } else if (command == Command::film) {
            shots.filming() ? finishFilm()
                            : say("filming " + shots.startFilm(session.size()).string());
        } else if (command == Command::record) {
            session.recording() ? stopRecording() : startRecording();
        } else if (command == Command::savePreset) {
            say("saved " + shots.preset(session.settings).string());
        } else {
            leaving = true;
        }
    }

    void showNextPreset() {
        if (!presets.empty()) {
            const NamedPreset& preset = presets[nextPreset++ % presets.size()];
            session.settings = loadPreset(preset.file);
            say(preset.name);
        }
    }

    void startRecording() {
        session.startRecording(shots.nameForGesture());
        say("recording " + session.recording()->file().string());
    }

    void stopRecording() {
        if (!session.recording()) {
            return;
        }
        const fs::path file = session.recording()->file();
        tellDigest();
        session.finishRecording();
        say("recorded " + file.string());
    }

    void finishFilm() {
        if (shots.filming()) {
            say("filmed " + shots.finishFilm().string());
        }
    }

    void dropPicture(char* name) {
        const fs::path file = name;
        SDL_free(name);
        attract.userCame(false);
        attempt([&] {
            session.showPicture(file);
            say(file.filename().string());
        });
    }

    // The effect

    void followSize() {
        if (session.size() == screen.window().pixels() || Clock::now() - resizedAt < resizeRest) {
            return;
        }
        finishFilm();
        stopRecording();
        session.restart();
        redraws = redrawsAfterEvent;
    }

    void play() {
        drawn = false;
        if (stepWanted) {
            frame(frameTime);
            stepWanted = false;
        } else if (!view.paused) {
            if (!replay && !session.recording()) {
                attract.comeIfIdle();
            }
            playDue();
        }
    }

    void playDue() {
        wakeUp();
        if (!active()) {
            return;
        }
        const bool exact = replay || session.recording();
        const auto [frames, elapsed] = clock.take(Clock::now(), session.settings.timeScale, exact);
        for (int one = 0; one < frames; ++one) {
            frame(elapsed);
        }
    }

    /// What comes while the effect stands still is shown in a frame at once.
    void wakeUp() {
        if (session.calm() && (!actions.empty() || !finger.actions.empty())) {
            frame(frameTime);
            clock.skip(Clock::now());
        }
    }

    void frame(std::chrono::nanoseconds elapsed) {
        session.frame(nextActions(), elapsed);
        drawn = true;
        times.push_back(session.times());
        if (times.size() > graphFrames) {
            times.erase(times.begin());
        }
        if (shots.filming()) {
            shots.addToFilm(session.shown());
        }
        if (replay && replay->frame >= replay->script.frames) {
            tellDigest();
            replay.reset();
            attract.userCame(false);
        }
    }

    /// From the user, else from the script, else from nobody's finger.
    std::vector<hostkit::ScriptAction> nextActions() {
        std::vector<hostkit::ScriptAction> next = std::exchange(actions, {});
        const auto append = [&](const std::vector<hostkit::ScriptAction>& more) {
            next.insert(next.end(), more.begin(), more.end());
        };
        std::vector<hostkit::ScriptAction> touches = takeActions(finger);
        if (replay) {
            append(scriptActions());
        } else {
            if (attract.runs()) {
                const bool goes = !touches.empty() || !attract.on || session.recording();
                append(goes ? attract.leave() : attract.next(session.size()));
            }
            append(touches);
        }
        return next;
    }

    std::vector<hostkit::ScriptAction> scriptActions() {
        const hostkit::GestureScript script =
            hostkit::scaledToScreen(replay->script, session.size().width, session.size().height);
        std::vector<hostkit::ScriptAction> found;
        for (const hostkit::ScriptEvent& event : hostkit::eventsOfFrame(script, replay->frame)) {
            found.push_back(event.action);
        }
        ++replay->frame;
        return found;
    }

    // The picture

    void present() {
        const bool noticing = Clock::now() < noticeEnd;
        const bool noticeChanged = noticing != std::exchange(noticeShown, noticing);
        if (!drawn && redraws <= 0 && !shooting && !noticeChanged) {
            return;
        }
        redraws = std::max(redraws - 1, 0);
        const auto start = Clock::now();
        if (drawn) {
            screen.canvas().keep(session.size());
        } else {
            screen.canvas().show(screen.window().pixels());
        }
        drawOver(noticing);
        if (std::exchange(shooting, false)) {
            attempt([&] { takeScreenshot(); });
        }
        screen.window().swap();
        if (drawn && !times.empty()) {
            times.back().gl +=
                std::chrono::duration<float, std::milli>(Clock::now() - start).count();
        }
    }

    /// Overlays, and the panel unless a screenshot is taken.
    void drawOver(bool noticing) {
        if (view.ink && session.inkTexture() != 0) {
            screen.canvas().showDensity(session.inkTexture(), screen.window().pixels());
        }
        screen.beginPanel();
        if (view.velocity) {
            drawVelocity(session.velocity());
        }
        if (!shooting) {
            drawWindows(noticing);
        }
        screen.drawPanel();
    }

    void drawWindows(bool noticing) {
        if (view.panel) {
            drawPanel({view, presets, times, session.settings, commands, chosenPreset});
        }
        if (view.help) {
            drawHelp();
        }
        if (noticing) {
            drawNotice(notice);
        }
    }

    void takeScreenshot() { say("saved " + shots.screenshot(session.shown()).string()); }

    // Words

    /// What fails while the window is open is told, and the window stays.
    template <class Work>
    void attempt(Work work) {
        try {
            work();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "velmora-player: %s\n", error.what());
            say(error.what());
        }
    }

    void say(const std::string& line) {
        notice = line;
        noticeEnd = Clock::now() + noticeTime;
        noticeShown = false;
    }

    void tellDigest() {
        if (options.digest) {
            std::printf("velocity %s\n", hex(session.velocityDigest()).c_str());
            std::fflush(stdout);
        }
    }

    Options options;
    std::optional<Replay> replay;
    Screen screen;
    Session session;
    std::vector<NamedPreset> presets = presetsIn(VELMORA_PRESETS);
    std::size_t nextPreset = 0;

    View view;
    Finger finger;
    FrameClock clock;
    std::vector<FrameTimes> times;
    std::vector<Command> commands;
    std::vector<hostkit::ScriptAction> actions;
    fs::path chosenPreset;

    Shots shots;
    Attract attract;
    Clock::time_point resizedAt{};

    std::string notice;
    Clock::time_point noticeEnd{};
    bool noticeShown = false;

    bool leaving = false;
    bool stepWanted = false;
    bool shooting = false;
    /// The effect drew a frame in this turn.
    bool drawn = false;
    int redraws = redrawsAfterEvent;
};

}  // namespace

bool wantsWindow(const Options& options) {
    return !options.headless && !options.outGiven && hasDesktop();
}

void runWindow(const Options& options) {
    std::signal(SIGINT, [](int) { interrupted = 1; });
    std::signal(SIGTERM, [](int) { interrupted = 1; });
    std::signal(SIGPIPE, SIG_IGN);
    WindowPlayer(options).run();
}

}  // namespace player
