#include "foreign_window.h"

#include <X11/Xutil.h>

ForeignWindow::ForeignWindow(int x, int y, unsigned width, unsigned height)
    : display(XOpenDisplay(nullptr)),
      window(
          XCreateSimpleWindow(display, DefaultRootWindow(display), x, y, width, height, 0, 0, 0)) {
    XMapWindow(display, window);
    XSync(display, False);
}

ForeignWindow::~ForeignWindow() {
    XCloseDisplay(display);
}

void ForeignWindow::moveAndResize(int x, int y, unsigned width, unsigned height) {
    XMoveResizeWindow(display, window, x, y, width, height);
    XSync(display, False);
}

void ForeignWindow::destroy() {
    XDestroyWindow(display, window);
    XSync(display, False);
}

bool ForeignWindow::leavesInputAlone() const {
    const Window root = DefaultRootWindow(display);
    const int keyboard =
        XGrabKeyboard(display, root, False, GrabModeAsync, GrabModeAsync, CurrentTime);
    const int pointer = XGrabPointer(display, root, False, ButtonPressMask, GrabModeAsync,
                                     GrabModeAsync, 0, 0, CurrentTime);
    XUngrabKeyboard(display, CurrentTime);
    XUngrabPointer(display, CurrentTime);
    XWindowAttributes attributes{};
    XGetWindowAttributes(display, window, &attributes);
    constexpr long input = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                           PointerMotionMask | EnterWindowMask | LeaveWindowMask;
    return keyboard == GrabSuccess && pointer == GrabSuccess &&
           (attributes.all_event_masks & input) == 0;
}

Pixbuf ForeignWindow::screenshot() const {
    XWindowAttributes root{};
    XGetWindowAttributes(display, DefaultRootWindow(display), &root);
    XImage* const image = XGetImage(display, root.root, 0, 0, static_cast<unsigned>(root.width),
                                    static_cast<unsigned>(root.height), AllPlanes, ZPixmap);
    Pixbuf shot(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, root.width, root.height));
    for (int y = 0; y < root.height; ++y) {
        for (int x = 0; x < root.width; ++x) {
            const unsigned long value = XGetPixel(image, x, y);
            for (int channel = 0; channel < 3; ++channel) {
                pixelPlace(shot, x, y)[channel] =
                    static_cast<guchar>(value >> (16 - 8 * channel) & 0xFF);
            }
        }
    }
    XDestroyImage(image);
    return shot;
}
