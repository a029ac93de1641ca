#include "file_drop.h"

#include <X11/Xatom.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <thread>

namespace {

struct Source {
    Display* display;
    Window window;
    Window target;

    Atom atom(const char* name) const { return XInternAtom(display, name, False); }

    void send(Window to, XEvent event) const {
        XSendEvent(display, to, False, NoEventMask, &event);
    }

    void tell(const char* type, std::array<long, 4> words) const {
        XEvent event{};
        event.xclient = {ClientMessage, 0, True, display, target, atom(type), 32, {}};
        event.xclient.data.l[0] = static_cast<long>(window);
        std::copy(words.begin(), words.end(), event.xclient.data.l + 1);
        send(target, event);
    }

    /// Sends the address of the dropped file to the window that has requested the address.
    void answer(const XSelectionRequestEvent& asked, const std::string& text) const {
        XChangeProperty(display, asked.requestor, asked.property, asked.target, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
        XEvent event{};
        event.type = SelectionNotify;
        event.xselection.requestor = asked.requestor;
        event.xselection.selection = asked.selection;
        event.xselection.target = asked.target;
        event.xselection.property = asked.property;
        event.xselection.time = asked.time;
        send(asked.requestor, event);
    }
};

}  // namespace

bool dropFile(Window target, const std::string& file) {
    const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), XCloseDisplay);
    const Window window =
        XCreateSimpleWindow(display.get(), DefaultRootWindow(display.get()), 0, 0, 1, 1, 0, 0, 0);
    const Source source{display.get(), window, target};
    XSetSelectionOwner(display.get(), source.atom("XdndSelection"), window, CurrentTime);
    source.tell("XdndEnter", {5L << 24, static_cast<long>(source.atom("text/uri-list"))});
    source.tell("XdndPosition",
                {0, 0, CurrentTime, static_cast<long>(source.atom("XdndActionCopy"))});
    source.tell("XdndDrop", {0, CurrentTime});
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
