#include "player/window/gl_window.h"

#define SDL_MAIN_HANDLED
#include <SDL2/SDL.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "desktop/failure.h"
#include "hostkit/gl_context.h"
#include "player/window/x11_desktop.h"

namespace player {

using desktop::Failure;

namespace {

Failure failed(const char* message) {
    return Failure(std::string(message) + ", " + SDL_GetError() +
                   "; use --headless to film without a window");
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Returns the SDL video drivers of the desktops that environment variables name. Without this list, SDL would fall
/// back to an invisible dummy driver.
std::string desktops() {
    const bool x11 = isSet("DISPLAY");
    const bool wayland = isSet("WAYLAND_DISPLAY");
    return x11 && wayland ? "x11,wayland" : x11 ? "x11" : "wayland";
}

/// Maximum fraction of the display's width and height that a window with a title bar covers.
constexpr double maxDisplayPart = 0.93;

/// Returns the size, scaled down if necessary to cover at most this fraction of the display's width and height.
app::Size withinDisplay(app::Size size, double part) {
    SDL_Rect display{};
    if (SDL_GetDisplayUsableBounds(0, &display) != 0) {
        return size;
    }
    const double scale =
        std::min({1.0, part * display.w / size.width, part * display.h / size.height});
    return {static_cast<int>(size.width * scale), static_cast<int>(size.height * scale)};
}

void requestGles2() {
    // The library asks EGL for the current context, so SDL must use EGL and not GLX.
    SDL_SetHint(SDL_HINT_OPENGL_ES_DRIVER, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_FORCE_EGL, "1");
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_ES);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 0);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 0);
}

}  // namespace

bool hasDesktop() {
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

GlWindow::VideoSystem::VideoSystem() {
    SDL_SetMainReady();
    hostkit::askForFineFiltering();
    SDL_SetHint(SDL_HINT_VIDEODRIVER, desktops().c_str());
    SDL_SetHint(SDL_HINT_MOUSE_TOUCH_EVENTS, "0");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        throw failed("cannot open a window");
    }
    requestGles2();
}

GlWindow::VideoSystem::~VideoSystem() {
    SDL_Quit();
}

GlWindow::GlWindow(const char* title, app::Size wanted, bool shrinks) {
    const app::Size size = withinDisplay(wanted, shrinks ? maxDisplayPart : 1.0);
    if (!shrinks && size != wanted) {
        desktop::warn("the display is smaller than --size, so the window is smaller",
                      std::to_string(size.width) + " x " + std::to_string(size.height));
    }
    window.reset(SDL_CreateWindow(
        title, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, size.width, size.height,
        SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
    if (!window) {
        throw failed("cannot open a window with OpenGL ES 2.0");
    }
    SDL_SetWindowMinimumSize(window.get(), 64, 64);
    renewContext();
}

GlWindow::~GlWindow() {
    SDL_GL_DeleteContext(gl);
}

void GlWindow::renewContext() {
    if (gl != nullptr) {
        SDL_GL_DeleteContext(gl);
    }
    gl = SDL_GL_CreateContext(window.get());
    if (gl == nullptr || SDL_GL_MakeCurrent(window.get(), gl) != 0) {
        throw failed("cannot create an OpenGL ES 2.0 context");
    }
    SDL_GL_SetSwapInterval(1);
}

void GlWindow::switchFullScreen() {
    if (before || !hasWindowManager(window.get())) {
        fillScreenAlone();
        return;
    }
    const bool full = (SDL_GetWindowFlags(window.get()) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
    SDL_SetWindowFullscreen(window.get(), full ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP);
}

/// Toggles full screen if there is no window manager. SDL relies on the window manager to resize the window.
void GlWindow::fillScreenAlone() {
    SDL_Rect now{};
    SDL_GetWindowPosition(window.get(), &now.x, &now.y);
    SDL_GetWindowSize(window.get(), &now.w, &now.h);
    SDL_Rect next{};
    if (before) {
        next = *std::exchange(before, std::nullopt);
    } else if (SDL_GetDisplayBounds(SDL_GetWindowDisplayIndex(window.get()), &next) == 0) {
        before = now;
    } else {
        return;
    }
    SDL_SetWindowPosition(window.get(), next.x, next.y);
    SDL_SetWindowSize(window.get(), next.w, next.h);
}

void GlWindow::swap() {
    SDL_GL_SwapWindow(window.get());
}

std::optional<app::Size> GlWindow::ownSize() const {
    const Uint32 ruled = SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_MAXIMIZED;
    if (before || (SDL_GetWindowFlags(window.get()) & ruled) != 0) {
        return std::nullopt;
    }
    app::Size size{};
    SDL_GetWindowSize(window.get(), &size.width, &size.height);
    return size;
}

app::Size GlWindow::pixels() const {
    app::Size size{};
    SDL_GL_GetDrawableSize(window.get(), &size.width, &size.height);
    return size;
}

double GlWindow::displayScale() const {
    constexpr double plainDpi = 96.0;
    constexpr double maxScale = 4.0;  // limit for displays that report a wrong size
    float measured = 0.0f;
    SDL_GetDisplayDPI(SDL_GetWindowDisplayIndex(window.get()), nullptr, &measured, nullptr);
    const double dpi = fontDpi(window.get()).value_or(static_cast<double>(measured));
    return std::max(scaleX(), std::clamp(dpi / plainDpi, 1.0, maxScale));
}

double GlWindow::scaleX() const {
    int units = 0;
    SDL_GetWindowSize(window.get(), &units, nullptr);
    return units > 0 ? static_cast<double>(pixels().width) / units : 1.0;
}

double GlWindow::scaleY() const {
    int units = 0;
    SDL_GetWindowSize(window.get(), nullptr, &units);
    return units > 0 ? static_cast<double>(pixels().height) / units : 1.0;
}

}  // namespace player
