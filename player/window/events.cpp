#include "player/window/events.h"

#include <SDL2/SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <imgui.h>
#include <imgui_internal.h>

#include <algorithm>
#include <optional>

#include "app/frame_clock.h"
#include "player/window/keys.h"

namespace player {
namespace {

/// Returns true for a key with Ctrl, Alt or Super, except Ctrl+Z and Ctrl+Y. The desktop handles such combinations.
bool hasModifier(const SDL_Keysym& key) {
    const int modifiers = key.mod & (KMOD_CTRL | KMOD_ALT | KMOD_GUI);
    const bool isUndo = key.sym == SDLK_z || key.sym == SDLK_y;
    return modifiers != 0 && !(isUndo && (modifiers & ~KMOD_CTRL) == 0);
}

bool isPopupOpen() {
    return ImGui::IsPopupOpen("", ImGuiPopupFlags_AnyPopup);
}

/// Returns true for Esc and Enter, which close a pop-up.
bool closesPopup(const SDL_Keysym& key) {
    return key.sym == SDLK_ESCAPE || key.sym == SDLK_RETURN;
}

/// Returns true if a text field needs the key. Esc and Enter in a pop-up close the pop-up, so its text field does not
/// need them. ImGui's flag WantTextInput alone is not sufficient: it stays set for two frames after such a pop-up has
/// closed, and keys in these two frames would be lost.
bool isForTextField(const SDL_Keysym& key) {
    const bool isTyping = isPopupOpen() ? !closesPopup(key) : ImGui::GetActiveID() != 0;
    return ImGui::GetIO().WantTextInput && isTyping;
}

bool isShortcut(const SDL_Event& event, bool popupHasKeys) {
    if (event.type != SDL_KEYDOWN || event.key.repeat != 0) {
        return false;
    }
    const SDL_Keysym& key = event.key.keysym;
    const bool isForPopup = popupHasKeys && !closesPopup(key);
    return !isForPopup && !isForTextField(key) && !hasModifier(key);
}

/// Returns the position of a mouse press or finger press in window units. Returns nothing for other events.
std::optional<ImVec2> pressPosition(const SDL_Event& event) {
    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    if (event.type == SDL_FINGERDOWN) {
        return ImVec2(event.tfinger.x * screen.x, event.tfinger.y * screen.y);
    }
    if (event.type == SDL_MOUSEBUTTONDOWN) {
        return ImVec2(static_cast<float>(event.button.x), static_cast<float>(event.button.y));
    }
    return std::nullopt;
}

/// Returns true if the press hits a window of ImGui. ImGui's flag WantCaptureMouse describes the last frame and does
/// not yet consider a new touch.
bool isOnPanel(ImVec2 press) {
    constexpr ImGuiWindowFlags seeThrough = ImGuiWindowFlags_NoMouseInputs;
    bool on = isPopupOpen();
    for (const ImGuiWindow* window : ImGui::GetCurrentContext()->Windows) {
        on = on || (window->WasActive && !window->Hidden && (window->Flags & seeThrough) == 0 &&
                    window->OuterRectClipped.Contains(press));
    }
    return on;
}

/// Returns the code of a key. A letter key has the code of its Latin letter even if the keyboard layout has other
/// letters.
int codeOf(const SDL_Keysym& key) {
    const bool isLetterKey = key.scancode >= SDL_SCANCODE_A && key.scancode <= SDL_SCANCODE_Z;
    const bool isForeign = key.sym > 0x7F && (key.sym & SDLK_SCANCODE_MASK) == 0;
    return isLetterKey && isForeign ? SDLK_a + (key.scancode - SDL_SCANCODE_A) : key.sym;
}

void requestCommands(int code, Requests& requests) {
    for (const Key& key : keys()) {
        if (key.code == code) {
            requests.commands.push_back(key.command);
        }
    }
}

bool hasCommand(const Requests& requests) {
    return !requests.commands.empty() || !requests.presetCommands.empty();
}

/// Removes the text event of the last key, which SDL adds directly after the event of the key. Otherwise a command that
/// opens a text field would also enter its letter there.
void removeTextOfKey() {
    SDL_Event next;
    const auto take = [&](SDL_eventaction action) {
        return SDL_PeepEvents(&next, 1, action, SDL_FIRSTEVENT, SDL_LASTEVENT) == 1;
    };
    if (take(SDL_PEEKEVENT) && next.type == SDL_TEXTINPUT) {
        take(SDL_GETEVENT);
    }
}

}  // namespace

void waitForEvent(std::chrono::nanoseconds time) {
    const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(time);
    SDL_WaitEventTimeout(nullptr, std::max(1, static_cast<int>(whole.count())));
}

bool handleEvents(const GlWindow& window, Pointer& pointer, app::Session& session,
                  Requests& requests, bool popupHasKeys) {
    bool any = false;
    for (SDL_Event event; !hasCommand(requests) && SDL_PollEvent(&event) != 0; any = true) {
        ImGui_ImplSDL2_ProcessEvent(&event);
        if (event.type == SDL_QUIT) {
            requests.commands.push_back(Command::quit);
        } else if (event.type == SDL_DROPFILE) {
            session.noteInput(app::Clock::now());
            requests.files.emplace_back(event.drop.file);
            SDL_free(event.drop.file);
        } else if (isShortcut(event, popupHasKeys)) {
            session.noteInput(app::Clock::now());
            requestCommands(codeOf(event.key.keysym), requests);
            removeTextOfKey();
        } else if (const auto press = pressPosition(event); !press || !isOnPanel(*press)) {
            feed(pointer, event, window, session);
        }
    }
    return any;
}

}  // namespace player
