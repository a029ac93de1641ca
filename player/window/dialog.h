#pragma once

#include <array>
#include <string>

#include "player/window/keys.h"
#include "player/window/requests.h"

namespace player {

/// Pop-up that asks for a name or a confirmation. Enter accepts the dialog. Esc and a click beside the dialog cancel
/// it.
class Dialog {
public:
    /// Opens the dialog with an input field that contains `text`. `action` is the label of the button that accepts the
    /// dialog.
    void ask(Command command, std::string question, const std::string& text, const char* action);
    /// Opens the dialog with a question but no input field.
    void confirm(Command command, std::string question, const char* action);
    /// Accepts the dialog in the next frame if the dialog is open.
    void accept() { accepting = true; }

    bool isOpen() const { return opening || shown; }
    /// Returns true from the request of a dialog until the dialog can receive keys.
    bool awaitsFocus() const { return opening || (shown && framesToFocus > 0); }

    /// Draws the dialog into the current ImGui frame. Adds the answer to `requests` when the user accepts the dialog.
    void draw(Requests& requests);

private:
    void open(Command wanted, std::string question, const char* label);
    void drawTextField(float width);
    void drawContent(Requests& requests);

    Command command{};
    std::string question;
    /// Text of the input field, with a terminating 0.
    std::array<char, 81> text{};
    const char* action = "";
    bool asksForText = false;
    /// True from the request of a dialog until the next frame opens the pop-up.
    bool opening = false;
    /// True if the last frame showed the pop-up.
    bool shown = false;
    /// Maximum number of frames until the text field has the focus. 0 if it has had the focus or if there is no field.
    int framesToFocus = 0;
    bool accepting = false;
};

}  // namespace player
