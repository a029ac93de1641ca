#include "player/window/keys.h"

#include <SDL2/SDL_keycode.h>

#include <algorithm>

namespace player {
namespace {

constexpr Key table[] = {
    {SDLK_F1, Command::help, "F1", app::commandText("help")},
    {SDLK_TAB, Command::panel, "Tab", app::commandText("panel")},
    {SDLK_SPACE, Command::pause, "Space", app::commandText("pause")},
    {SDLK_PERIOD, Command::step, ".", app::commandText("step")},
    {SDLK_c, Command::clearInk, "C", app::commandText("clearInk")},
    {SDLK_b, Command::secondBackground, "B", app::commandText("secondPicture")},
    {SDLK_w, Command::waterOnly, "W", app::commandText("waterOnly")},
    {SDLK_i, Command::inkForBackground, "I", app::commandText("matchInk")},
    {SDLK_n, Command::nextPreset, "N", app::commandText("nextPreset")},
    {SDLK_m, Command::randomSettings, "M", app::commandText("randomSettings")},
    {SDLK_BACKSPACE, Command::resetSettings, "Backspace", app::commandText("resetSettings")},
    {SDLK_p, Command::savePreset, "P", app::commandText("savePreset")},
    {SDLK_t, Command::renamePreset, "T", app::commandText("renamePreset")},
    {SDLK_DELETE, Command::deletePreset, "Delete", app::commandText("deletePreset")},
    {SDLK_z, Command::undo, "Z", app::commandText("undo")},
    {SDLK_y, Command::redo, "Y", app::commandText("redo")},
    {SDLK_o, Command::openFile, "O", app::commandText("openFile")},
    {SDLK_s, Command::screenshot, "S", app::commandText("screenshot")},
    {SDLK_f, Command::film, "F", app::commandText("film")},
    {SDLK_r, Command::record, "R", app::commandText("record")},
    {SDLK_g, Command::replay, "G", app::commandText("replay")},
    {SDLK_a, Command::attract, "A", app::commandText("attractMode")},
    {SDLK_F11, Command::fullScreen, "F11", app::commandText("fullScreen")},
    {SDLK_v, Command::velocityOverlay, "V", app::commandText("velocityOverlay")},
    {SDLK_d, Command::inkOverlay, "D", app::commandText("inkOverlay")},
    {SDLK_l, Command::loseContext, "L", app::commandText("loseContext")},
    {SDLK_RETURN, Command::accept, "Enter", {"accept", "Accept", "Accept a question"}},
    {SDLK_ESCAPE,
     Command::back,
     "Esc",
     {"back", "Close", "Close this list or the settings, stop the newest activity, or quit"}},
    {SDLK_q, Command::quit, "Q", {"quit", "Quit", "Quit"}},
};

}  // namespace

std::span<const Key> keys() {
    return table;
}

const app::CommandText& textOf(Command command) {
    return std::ranges::find(table, command, &Key::command)->text;
}

}  // namespace player
