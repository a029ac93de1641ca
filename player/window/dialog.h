#pragma once

#include <array>
#include <string>

#include "player/window/keys.h"
#include "player/window/requests.h"

namespace player {

/// Pop-up that asks for a name or a confirmation. Enter accepts it. Esc and a click beside it cancel it.
class Dialog {
public:
    /// Opens the dialog with a text to edit. `action` is the label of the button that accepts it.
    void ask(Command command, std::string question, const std::string& text, const char* action);
    /// Opens the dialog without a text.
    void confirm(Command command, std::string question, const char* action);
    /// Accepts the dialog in the next frame if it is open.
    void accept() { accepting = true; }

    /// Draws the dialog into the current ImGui frame. Requests the answer when the user accepts.
    void draw(Requests& requests);

private:
    void open(Command wanted, std::string question, const char* label);
    void drawContent(Requests& requests);

    Command command{};
    std::string question;
    /// Text of the input field, with a terminating 0.
    std::array<char, 81> text{};
    const char* action = "";
    bool asksForText = false;
    /// True until the next frame opens the pop-up.
    bool opening = false;
    bool accepting = false;
};

}  // namespace player
