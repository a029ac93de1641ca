#include "file_drop.h"

#include <X11/Xatom.h>

#include <chrono>
#include <memory>
#include <thread>

namespace {

struct Source {
    Display* display;
    Window window;
    Window target;

    Atom atom(const char* name) const { return XInternAtom(display, name, False); }

    void send(const char* type, long first, long second, long third, long fourth) const {
        XClientMessageEvent message{};
        message.type = ClientMessage;
        message.display = display;
        message.window = target;
        message.message_type = atom(type);
        message.format = 32;
        const long data[] = {static_cast<long>(window), first, second, third, fourth};
        std::copy(std::begin(data), std::end(data), message.data.l);
        XSendEvent(display, target, False, NoEventMask, reinterpret_cast<XEvent*>(&message));
        XFlush(display);
    }

    /// Hands the dropped text over to the window that asks for it.
    void answer(const XSelectionRequestEvent& request, const std::string& text) const {
        XChangeProperty(display, request.requestor, request.property, request.target, 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
        XSelectionEvent notice{SelectionNotify,
                               0,
                               True,
                               display,
                               request.requestor,
                               request.selection,
                               request.target,
                               request.property,
                               request.time};
        XSendEvent(display, request.requestor, False, NoEventMask,
                   reinterpret_cast<XEvent*>(&notice));
        XFlush(display);
    }
};

}  // namespace

bool dropFile(Window target, const std::string& file) {
    const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display) {
        return false;
    }
    const Window window =
        XCreateSimpleWindow(display.get(), DefaultRootWindow(display.get()), 0, 0, 1, 1, 0, 0, 0);
    const Source source{display.get(), window, target};
    const Atom uris = source.atom("text/uri-list");
    XSetSelectionOwner(display.get(), source.atom("XdndSelection"), window, CurrentTime);
    source.send("XdndEnter", 5L << 24, static_cast<long>(uris), 0, 0);
    source.send("XdndPosition", 0, 0, CurrentTime,
                static_cast<long>(source.atom("XdndActionCopy")));
    source.send("XdndDrop", 0, CurrentTime, 0, 0);
    for (int turn = 0; turn < 3000; ++turn) {
        while (XPending(display.get()) > 0) {
            XEvent event{};
            XNextEvent(display.get(), &event);
            if (event.type == SelectionRequest) {
                source.answer(event.xselectionrequest, "file://" + file + "\r\n");
            } else if (event.type == ClientMessage &&
                       event.xclient.message_type == source.atom("XdndFinished")) {
                return true;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}
