#include "app/finger.h"

#include <utility>
#include <variant>

namespace app {

using hostkit::Touch;
using hostkit::TouchAction;

// If the previous action is also a move, the new move replaces it. The library measures speed as the distance between
// two moves. Several moves in a frame would be closer together, so the finger would appear slower.
void Finger::add(const Touch& touch) {
    const Touch* last = actions.empty() ? nullptr : std::get_if<Touch>(&actions.back());
    if (last != nullptr && last->action == TouchAction::move && touch.action == TouchAction::move) {
        actions.pop_back();
    }
    actions.emplace_back(touch);
}

void Finger::press(double x, double y, float pressure) {
    if (!held) {
        held = true;
        pressed = true;
        add({TouchAction::down, x, y, pressure});
    }
}

void Finger::move(double x, double y, float pressure, Size screen) {
    if (!held) {
        return;
    }
    const bool inside = x >= 0.0 && y >= 0.0 && x < screen.width && y < screen.height;
    const bool wasPressed = std::exchange(pressed, inside);
    if (inside) {
        add({wasPressed ? TouchAction::move : TouchAction::down, x, y, pressure});
    } else if (wasPressed) {
        add({TouchAction::up, x, y, 0.0f});
    }
}

void Finger::end(TouchAction action, double x, double y) {
    held = false;
    if (std::exchange(pressed, false)) {
        add({action, x, y, 0.0f});
    }
}

std::vector<hostkit::ScriptAction> Finger::takeActions() {
    return std::exchange(actions, {});
}

void Finger::reset() {
    pressed = false;
    held = false;
    actions.clear();
}

}  // namespace app
