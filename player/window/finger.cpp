#include "player/window/finger.h"

#include <utility>

namespace player {
namespace {

using hostkit::Touch;
using hostkit::TouchAction;

void add(Finger& finger, const Touch& touch) {
    const auto* last =
        finger.actions.empty() ? nullptr : std::get_if<Touch>(&finger.actions.back());
    if (last != nullptr && last->action == TouchAction::move && touch.action == TouchAction::move) {
        finger.actions.pop_back();
    }
    finger.actions.emplace_back(touch);
}

void press(Finger& finger, double x, double y, float pressure, bool isMouse, SDL_FingerID id) {
    if (!finger.pressed) {
        finger.pressed = true;
        finger.isMouse = isMouse;
        finger.id = id;
        add(finger, {TouchAction::down, x, y, pressure});
    }
}

void end(Finger& finger, TouchAction action, double x, double y) {
    if (std::exchange(finger.pressed, false)) {
        add(finger, {action, x, y, 0.0f});
    }
}

void move(Finger& finger, double x, double y, float pressure, Size size) {
    if (!finger.pressed) {
        return;
    }
    if (x < 0.0 || y < 0.0 || x >= size.width || y >= size.height) {
        end(finger, TouchAction::cancel, x, y);
    } else {
        add(finger, {TouchAction::move, x, y, pressure});
    }
}

void feedMouse(Finger& finger, const SDL_Event& event, const GlWindow& window, float pressure) {
    const bool motion = event.type == SDL_MOUSEMOTION;
    const Uint32 device = motion ? event.motion.which : event.button.which;
    if (device == SDL_TOUCH_MOUSEID || (!motion && event.button.button != SDL_BUTTON_LEFT) ||
        (finger.pressed && !finger.isMouse)) {
        return;
    }
    const double x = (motion ? event.motion.x : event.button.x) * window.scaleX();
    const double y = (motion ? event.motion.y : event.button.y) * window.scaleY();
    if (motion) {
        move(finger, x, y, pressure, window.pixels());
    } else if (event.type == SDL_MOUSEBUTTONDOWN) {
        press(finger, x, y, pressure, true, 0);
    } else {
        end(finger, TouchAction::up, x, y);
    }
}

void feedTouchScreen(Finger& finger, const SDL_TouchFingerEvent& event, Size size) {
    if (finger.pressed && (finger.isMouse || event.fingerId != finger.id)) {
        return;
    }
    const double x = static_cast<double>(event.x) * size.width;
    const double y = static_cast<double>(event.y) * size.height;
    if (event.type == SDL_FINGERDOWN) {
        press(finger, x, y, event.pressure, false, event.fingerId);
    } else if (event.type == SDL_FINGERMOTION) {
        move(finger, x, y, event.pressure, size);
    } else {
        end(finger, TouchAction::up, x, y);
    }
}

}  // namespace

void feed(Finger& finger, const SDL_Event& event, const GlWindow& window, float mousePressure) {
    switch (event.type) {
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
        case SDL_MOUSEMOTION:
            feedMouse(finger, event, window, mousePressure);
            break;
        case SDL_FINGERDOWN:
        case SDL_FINGERUP:
        case SDL_FINGERMOTION:
            feedTouchScreen(finger, event.tfinger, window.pixels());
            break;
        case SDL_WINDOWEVENT:
            if (event.window.event == SDL_WINDOWEVENT_LEAVE ||
                event.window.event == SDL_WINDOWEVENT_FOCUS_LOST) {
                end(finger, TouchAction::cancel, 0.0, 0.0);
            }
            break;
        default:
            break;
    }
}

std::vector<hostkit::ScriptAction> takeActions(Finger& finger) {
    return std::exchange(finger.actions, {});
}

}  // namespace player
