#include "screensaver/saver_window.h"

#include <EGL/eglext.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/text.h"
#include "desktop/failure.h"
#include "hostkit/gl_context.h"

namespace saver {
namespace {

constexpr app::Size ownSize{960, 600};
/// Events about the size and the content of a window. Several programs can select these events at the same time.
constexpr long windowEvents = StructureNotifyMask | ExposureMask;

/// True after the X server has reported that a window does not exist. A global variable, because X error handlers have
/// no parameter for an object.
std::atomic<bool> windowMissing = false;

int noteError(Display*, XErrorEvent* error) {
    windowMissing =
        windowMissing || error->error_code == BadWindow || error->error_code == BadDrawable;
    return 0;
}

/// Ends the program when the X server ends. Xlib requires that this handler never returns.
int endWithServer(Display*) {
    _exit(0);
}

/// Ends the program when the X server closes the connection. The handler of Xlib is not sufficient: if the server ends
/// while Mesa's software rasteriser copies a frame to the server, Mesa never returns.
void watchConnection(int connection) {
    std::thread([connection] {
        pollfd closing{connection, POLLRDHUP, 0};
        while (poll(&closing, 1, -1) < 0) {
        }
        _exit(0);
    }).detach();
}

/// Opens the display. XInitThreads makes Xlib use locks, because another thread opens a second connection to grab
/// pictures.
Display* openDisplay() {
    XInitThreads();
    return XOpenDisplay(nullptr);
}

std::string hex(unsigned long number) {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), "0x%lx", number);
    return text.data();
}

/// Returns true for the keys that close the window: q and Esc. The programs of XScreenSaver use the same keys when they
/// run in a separate window.
bool isEndKey(XKeyEvent key) {
    const KeySym pressed = XLookupKeysym(&key, 0);
    return pressed == XK_q || pressed == XK_Escape;
}

desktop::Failure eglFailure(const std::string& message) {
    return desktop::Failure(message + ": EGL error " +
                            hex(static_cast<unsigned long>(eglGetError())) +
                            "; check the graphics driver");
}

}  // namespace

SaverWindow::SaverWindow(const Target& target) : display(openDisplay()) {
    if (display == nullptr) {
        throw desktop::Failure("cannot open the X display " + app::inQuotes(XDisplayName(nullptr)) +
                               "; set the variable DISPLAY to a running X server");
    }
    XSetErrorHandler(noteError);
    XSetIOErrorHandler(endWithServer);
    hostkit::askForFineFiltering();
    watchConnection(ConnectionNumber(display));
    egl = eglGetPlatformDisplay(EGL_PLATFORM_X11_KHR, display, nullptr);
    if (egl == EGL_NO_DISPLAY || !eglInitialize(egl, nullptr, nullptr)) {
        throw eglFailure("cannot use OpenGL ES on this display");
    }
    eglBindAPI(EGL_OPENGL_ES_API);
    switch (target.kind) {
        case Target::Kind::ownWindow:
            openWindow();
            break;
        case Target::Kind::rootWindow:
            useWindow(DefaultRootWindow(display));
            break;
        case Target::Kind::givenWindow:
            useWindow(target.window);
            break;
    }
    renewContext();
}

SaverWindow::~SaverWindow() {
    dropContext();
    if (egl != EGL_NO_DISPLAY) {
        eglTerminate(egl);
    }
}

void SaverWindow::useWindow(Window given) {
    // Select the events before the size is read, so that no resize is missed.
    XSelectInput(display, given, windowEvents);
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, given, &attributes) == 0) {
        throw desktop::Failure(
            "there is no window " + hex(given) +
            " on this display; give the number of a window, as xwininfo prints it");
    }
    window = given;
    pixels = {attributes.width, attributes.height};
    config = configOf(XVisualIDFromVisual(attributes.visual));
}

void SaverWindow::openWindow() {
    Display* const x = display;
    config = configOf(XVisualIDFromVisual(DefaultVisual(x, DefaultScreen(x))));
    pixels = ownSize;
    window = XCreateSimpleWindow(x, DefaultRootWindow(x), 0, 0, static_cast<unsigned>(pixels.width),
                                 static_cast<unsigned>(pixels.height), 0, 0,
                                 BlackPixel(x, DefaultScreen(x)));
    XStoreName(x, window, "Velmora");
    closing = XInternAtom(x, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(x, window, &closing, 1);
    XSelectInput(x, window, windowEvents | KeyPressMask);
    XMapWindow(x, window);
}

/// Returns an EGL configuration for windows with this X11 visual. A surface with another configuration would not fit
/// the window.
EGLConfig SaverWindow::configOf(VisualID visual) const {
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_WINDOW_BIT, EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_ES2_BIT, EGL_NONE};
    EGLint count = 0;
    eglChooseConfig(egl, wanted, nullptr, 0, &count);
    std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
    eglChooseConfig(egl, wanted, configs.data(), count, &count);
    const auto found = std::ranges::find_if(configs, [&](EGLConfig candidate) {
        EGLint id = 0;
        eglGetConfigAttrib(egl, candidate, EGL_NATIVE_VISUAL_ID, &id);
        return static_cast<VisualID>(id) == visual;
    });
    if (found == configs.end()) {
        throw desktop::Failure("OpenGL ES cannot draw into a window of visual " + hex(visual) +
                               "; use a window of the default visual");
    }
    return *found;
}

void SaverWindow::dropContext() {
    if (egl == EGL_NO_DISPLAY) {
        return;
    }
    eglMakeCurrent(egl, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context != EGL_NO_CONTEXT) {
        eglDestroyContext(egl, std::exchange(context, EGL_NO_CONTEXT));
    }
    if (surface != EGL_NO_SURFACE) {
        eglDestroySurface(egl, std::exchange(surface, EGL_NO_SURFACE));
    }
}

void SaverWindow::renewContext() {
    dropContext();
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    context = eglCreateContext(egl, config, EGL_NO_CONTEXT, version);
    if (context == EGL_NO_CONTEXT) {
        throw eglFailure("cannot create an OpenGL ES 2.0 context");
    }
    // Mesa crashes if another program destroys the window while Mesa creates a surface for it. So grab the X server: it
    // then runs no commands of other programs.
    XGrabServer(display);
    XWindowAttributes attributes{};
    const bool exists = XGetWindowAttributes(display, window, &attributes) != 0;
    if (exists) {
        surface = eglCreatePlatformWindowSurface(egl, config, &window, nullptr);
    }
    const bool canDraw =
        surface != EGL_NO_SURFACE && eglMakeCurrent(egl, surface, surface, context) == EGL_TRUE;
    XUngrabServer(display);
    XFlush(display);
    if (!exists) {
        throw desktop::Failure(
            "window " + hex(window) +
            " does not exist any more; start the screen saver in another window");
    }
    if (!canDraw) {
        throw eglFailure("cannot draw into window " + hex(window));
    }
    eglSwapInterval(egl, 1);
}

bool SaverWindow::swap() {
    return eglSwapBuffers(egl, surface) == EGL_TRUE || eglGetError() != EGL_CONTEXT_LOST;
}

void SaverWindow::handleEvents(std::chrono::nanoseconds maxWait) {
    if (XPending(display) == 0) {
        pollfd connection{ConnectionNumber(display), POLLIN, 0};
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(maxWait);
        poll(&connection, 1, static_cast<int>(wait.count()));
    }
    while (XPending(display) > 0) {
        XEvent event{};
        XNextEvent(display, &event);
        handle(event);
    }
}

void SaverWindow::handle(const XEvent& event) {
    switch (event.type) {
        case ConfigureNotify:
            pixels = {std::max(1, event.xconfigure.width), std::max(1, event.xconfigure.height)};
            break;
        case Expose:
            exposed = true;
            break;
        case DestroyNotify:
            windowMissing = windowMissing || event.xdestroywindow.window == window;
            break;
        case ClientMessage:
            // `closing` is the atom of the close message, or 0 if another program owns the window. A close
            // message to another program's window therefore does not end this program.
            closed =
                closed || (closing != 0 && static_cast<Atom>(event.xclient.data.l[0]) == closing);
            break;
        case KeyPress:
            closed = closed || isEndKey(event.xkey);
            break;
        default:
            break;
    }
}

bool SaverWindow::isGone() const {
    return closed || windowMissing;
}

bool SaverWindow::takeExposure() {
    return std::exchange(exposed, false);
}

}  // namespace saver
