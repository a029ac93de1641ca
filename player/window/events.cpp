#include "player/window/events.h"

#include <SDL2/SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>
#include <chrono>

#include "player/window/commands.h"
#include "player/window/playing.h"

namespace player {
namespace {

using namespace std::chrono_literals;
using Clock = FrameClock::Clock;

/// Combinations are the desktop's.
bool isCombined(const SDL_Keysym& key) {
    return (key.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI)) != 0;
}

void pressKey(WindowState& window, int code) {
    window.attract.userCame(false);
    for (const Key& key : keys()) {
        if (key.code == code) {
            window.commands.push_back(key.command);
        }
    }
}

void takeDrop(WindowState& window, char* name) {
    const std::filesystem::path file = name;
    SDL_free(name);
    window.attract.userCame(false);
    dropFile(window, file);
}

bool resizes(const SDL_Event& event) {
    return event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED;
}

void take(WindowState& window, const SDL_Event& event) {
    const ImGuiIO& io = ImGui::GetIO();
    if (event.type == SDL_QUIT) {
        window.leaving = true;
    } else if (event.type == SDL_KEYDOWN && event.key.repeat == 0 && !io.WantTextInput &&
               !isCombined(event.key.keysym)) {
        pressKey(window, event.key.keysym.sym);
    } else if (event.type == SDL_DROPFILE) {
        takeDrop(window, event.drop.file);
    } else if (resizes(event)) {
        window.resizedAt = Clock::now();
    }
    const bool pointer = event.type >= SDL_MOUSEMOTION && event.type <= SDL_FINGERMOTION;
    if (!pointer || window.finger.pressed || !io.WantCaptureMouse) {
        feed(window.finger, event, window.screen.window(), window.session.settings.pressure);
    }
    if (window.finger.pressed) {
        window.attract.userCame(true);
    }
}

}  // namespace

void waitForWork(WindowState& window) {
    const auto now = Clock::now();
    std::chrono::nanoseconds wait = 250ms;
    if (isActive(window)) {
        wait = window.clock.untilNext(now, window.session.settings.timeScale);
    } else {
        window.clock.skip(now);
    }
    const bool redraw = window.redraws > 0 || window.stepWanted || window.shots.filming();
    wait = redraw ? std::min<std::chrono::nanoseconds>(wait, 10ms) : wait;
    const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(wait);
    SDL_WaitEventTimeout(nullptr, std::max(1, static_cast<int>(whole.count())));
}

void takeEvents(WindowState& window) {
    for (SDL_Event event; SDL_PollEvent(&event) != 0;) {
        ImGui_ImplSDL2_ProcessEvent(&event);
        window.redraws = redrawsAfterEvent;
        take(window, event);
    }
}

}  // namespace player
