#include "player/window/keys.h"

#include <SDL2/SDL_keycode.h>

namespace player {
namespace {

constexpr Key table[] = {
    {SDLK_F1, Command::help, "F1", "show or hide this list"},
    {SDLK_TAB, Command::panel, "Tab", "show or hide the settings panel"},
    {SDLK_SPACE, Command::pause, "Space", "pause or resume"},
    {SDLK_PERIOD, Command::step, ".", "pause and draw one frame"},
    {SDLK_c, Command::clearInk, "C", "clear the ink"},
    {SDLK_b, Command::secondBackground, "B", "switch to the other background"},
    {SDLK_w, Command::waterOnly, "W", "water without ink, on or off"},
    {SDLK_v, Command::velocityOverlay, "V", "velocity overlay, on or off"},
    {SDLK_d, Command::inkOverlay, "D", "ink density overlay, on or off"},
    {SDLK_n, Command::nextPreset, "N", "load the next preset"},
    {SDLK_i, Command::inkForBackground, "I", "choose an ink that contrasts with the background"},
    {SDLK_m, Command::randomSettings, "M", "random settings"},
    {SDLK_BACKSPACE, Command::resetSettings, "Backspace", "reset the settings to the preset"},
    {SDLK_p, Command::savePreset, "P", "save the settings as a preset"},
    {SDLK_s, Command::screenshot, "S", "save a screenshot"},
    {SDLK_f, Command::film, "F", "start or stop a film"},
    {SDLK_r, Command::record, "R", "start or stop recording a gesture; a start resets the effect"},
    {SDLK_g, Command::replay, "G", "replay the last recording"},
    {SDLK_l, Command::loseContext, "L", "lose the GL context and rebuild it"},
    {SDLK_a, Command::attract, "A", "attract mode (moves by itself when idle), on or off"},
    {SDLK_F11, Command::fullScreen, "F11", "full screen, on or off"},
    {SDLK_ESCAPE, Command::back, "Esc", "close this list, or quit if it is closed"},
    {SDLK_q, Command::quit, "Q", "quit"},
};

}  // namespace

std::span<const Key> keys() {
    return table;
}

}  // namespace player
