#include "player/window/pointer.h"

#include <SDL2/SDL_mouse.h>
#include <SDL2/SDL_video.h>

#include "app/frame_clock.h"
#include "app/session.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "player/window/gl_window.h"

namespace player {
namespace {

using hostkit::TouchAction;

void feedMouse(Pointer& pointer, const SDL_Event& event, const GlWindow& window,
               app::Session& session) {
    const bool motion = event.type == SDL_MOUSEMOTION;
    const Uint32 device = motion ? event.motion.which : event.button.which;
    if (device == SDL_TOUCH_MOUSEID || (!motion && event.button.button != SDL_BUTTON_LEFT) ||
        (session.isPressed() && !pointer.isMouse)) {
        return;
    }
    const double x = (motion ? event.motion.x : event.button.x) * window.scaleX();
    const double y = (motion ? event.motion.y : event.button.y) * window.scaleY();
    if (motion) {
        session.move(app::Clock::now(), x, y, session.settings.pressure);
    } else if (event.type == SDL_MOUSEBUTTONDOWN) {
        pointer.isMouse = true;
        session.press(app::Clock::now(), x, y, session.settings.pressure);
    } else {
        session.lift(app::Clock::now(), TouchAction::up, x, y);
    }
}

void feedTouchScreen(Pointer& pointer, const SDL_TouchFingerEvent& event, const GlWindow& window,
                     app::Session& session) {
    if (session.isPressed() && (pointer.isMouse || event.fingerId != pointer.id)) {
        return;
    }
    const app::Size size = window.pixels();
    const double x = static_cast<double>(event.x) * size.width;
    const double y = static_cast<double>(event.y) * size.height;
    if (event.type == SDL_FINGERDOWN) {
        pointer = {false, event.fingerId};
        session.press(app::Clock::now(), x, y, event.pressure);
    } else if (event.type == SDL_FINGERMOTION) {
        session.move(app::Clock::now(), x, y, event.pressure);
    } else {
        session.lift(app::Clock::now(), TouchAction::up, x, y);
    }
}

}  // namespace

void feed(Pointer& pointer, const SDL_Event& event, const GlWindow& window, app::Session& session) {
    switch (event.type) {
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
        case SDL_MOUSEMOTION:
            feedMouse(pointer, event, window, session);
            break;
        case SDL_FINGERDOWN:
        case SDL_FINGERUP:
        case SDL_FINGERMOTION:
            feedTouchScreen(pointer, event.tfinger, window, session);
            break;
        case SDL_WINDOWEVENT:
            if (event.window.event == SDL_WINDOWEVENT_LEAVE ||
                event.window.event == SDL_WINDOWEVENT_FOCUS_LOST) {
                session.lift(app::Clock::now(), TouchAction::up, 0.0, 0.0);
            }
            break;
        default:
            break;
    }
}

}  // namespace player
