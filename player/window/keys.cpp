#include "player/window/keys.h"

#include <SDL2/SDL_keycode.h>

namespace player {
namespace {

constexpr Key table[] = {
    {SDLK_F1, "F1", Command::help, "this list"},
    {SDLK_TAB, "Tab", Command::panel, "the panel with all settings"},
    {SDLK_SPACE, "Space", Command::pause, "pause and go on"},
    {SDLK_PERIOD, ".", Command::step, "one frame, paused"},
    {SDLK_c, "C", Command::clearInk, "clear the ink"},
    {SDLK_b, "B", Command::secondBackground, "the other background"},
    {SDLK_w, "W", Command::waterOnly, "water without ink"},
    {SDLK_v, "V", Command::velocityOverlay, "the velocity field"},
    {SDLK_d, "D", Command::inkOverlay, "the ink's density"},
    {SDLK_n, "N", Command::nextPreset, "the next preset"},
    {SDLK_p, "P", Command::savePreset, "save the settings as a preset"},
    {SDLK_s, "S", Command::screenshot, "a screenshot"},
    {SDLK_f, "F", Command::film, "film, from here or to here"},
    {SDLK_r, "R", Command::record, "record the gesture, from here or to here"},
    {SDLK_l, "L", Command::loseContext, "lose the GL context and rebuild it"},
    {SDLK_a, "A", Command::attract, "a finger of its own after idle seconds, on or off"},
    {SDLK_ESCAPE, "Esc", Command::quit, "quit (so does Q)"},
    {SDLK_q, "Q", Command::quit, ""},
};

}  // namespace

std::span<const Key> keys() {
    return table;
}

std::string keyHelp() {
    std::string text;
    for (const Key& key : table) {
        if (*key.words != '\0') {
            const std::string name = key.name;
            text += "  " + name + std::string(8 - name.size(), ' ') + key.words + "\n";
        }
    }
    return text +
           "  A picture dropped on the window becomes the background, the former one the second.\n";
}

}  // namespace player
