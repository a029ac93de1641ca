#include "player/window/events.h"

#include <SDL2/SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>

#include <algorithm>

namespace player {
namespace {

/// Combinations are the desktop's.
bool isCombined(const SDL_Keysym& key) {
    return (key.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI)) != 0;
}

bool isOurKey(const SDL_Event& event) {
    return event.type == SDL_KEYDOWN && event.key.repeat == 0 && !ImGui::GetIO().WantTextInput &&
           !isCombined(event.key.keysym);
}

/// Whether the panel keeps the pointer for itself.
bool isPanels(const SDL_Event& event) {
    const bool pointer = event.type >= SDL_MOUSEMOTION && event.type <= SDL_FINGERMOTION;
    return pointer && ImGui::GetIO().WantCaptureMouse;
}

void pressKey(int code, Requests& requests) {
    for (const Key& key : keys()) {
        if (key.code == code) {
            requests.commands.push_back(key.command);
        }
    }
}

}  // namespace

void waitForEvent(std::chrono::nanoseconds time) {
    const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(time);
    SDL_WaitEventTimeout(nullptr, std::max(1, static_cast<int>(whole.count())));
}

bool takeEvents(const GlWindow& window, float mousePressure, Gestures& gestures,
                Requests& requests) {
    bool any = false;
    for (SDL_Event event; SDL_PollEvent(&event) != 0; any = true) {
        ImGui_ImplSDL2_ProcessEvent(&event);
        if (event.type == SDL_QUIT) {
            requests.commands.push_back(Command::quit);
        } else if (event.type == SDL_DROPFILE) {
            gestures.userCame();
            requests.drops.emplace_back(event.drop.file);
            SDL_free(event.drop.file);
        } else if (isOurKey(event)) {
            gestures.userCame();
            pressKey(event.key.keysym.sym, requests);
        } else if (gestures.pressed() || !isPanels(event)) {
            gestures.feed(event, window, mousePressure);
        }
    }
    return any;
}

}  // namespace player
