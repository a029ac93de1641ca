#include "player/window/keys.h"

#include <SDL2/SDL_keycode.h>

namespace player {
namespace {

constexpr Key table[] = {
    {SDLK_F1, Command::help, "F1", "this list"},
    {SDLK_TAB, Command::panel, "Tab", "the panel with all settings"},
    {SDLK_SPACE, Command::pause, "Space", "pause and go on"},
    {SDLK_PERIOD, Command::step, ".", "one frame, paused"},
    {SDLK_c, Command::clearInk, "C", "clear the ink"},
    {SDLK_b, Command::secondBackground, "B", "the other background"},
    {SDLK_w, Command::waterOnly, "W", "water without ink"},
    {SDLK_v, Command::velocityOverlay, "V", "the velocity field"},
    {SDLK_d, Command::inkOverlay, "D", "the ink's density"},
    {SDLK_n, Command::nextPreset, "N", "the next preset"},
    {SDLK_i, Command::inkForBackground, "I", "an ink that stands out from the picture"},
    {SDLK_m, Command::randomSettings, "M", "a look by chance"},
    {SDLK_BACKSPACE, Command::resetSettings, "Backspace", "the preset's look again, unchanged"},
    {SDLK_p, Command::savePreset, "P", "save the settings as a preset"},
    {SDLK_s, Command::screenshot, "S", "a screenshot"},
    {SDLK_f, Command::film, "F", "film, from here or to here"},
    {SDLK_r, Command::record, "R", "record the gesture, from a fresh start or to here"},
    {SDLK_g, Command::replay, "G", "replay the gesture recorded last"},
    {SDLK_l, Command::loseContext, "L", "lose the GL context and rebuild it"},
    {SDLK_a, Command::attract, "A", "a finger of its own after idle seconds, on or off"},
    {SDLK_F11, Command::fullScreen, "F11", "the whole screen, and back"},
    {SDLK_ESCAPE, Command::back, "Esc", "close this list, else quit"},
    {SDLK_q, Command::quit, "Q", "quit"},
};

}  // namespace

std::span<const Key> keys() {
    return table;
}

}  // namespace player
