#include "screensaver/grab.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "desktop/failure.h"

namespace saver {
namespace {

using namespace std::chrono_literals;

/// Time limit for xscreensaver-getimage. A program that takes longer is killed, because a slow network may block it.
constexpr auto maxGrabTime = 30s;
/// Time between two checks whether xscreensaver-getimage still runs.
constexpr auto checkInterval = 10ms;
/// Folder of xscreensaver-getimage and of its helper programs. XScreenSaver adds this folder to PATH when it starts a
/// screen saver.
constexpr const char* programFolder = "/usr/libexec/xscreensaver";

struct CloseDisplay {
    void operator()(Display* opened) const { XCloseDisplay(opened); }
};
struct DestroyImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};

desktop::Failure cannotGrab(const std::string& reason) {
    return desktop::Failure("cannot grab the desktop, " + reason +
                            "; choose a picture with --picture");
}

/// Starts xscreensaver-getimage, which draws into the pixmap. Returns the process. Throws Failure if the program is
/// missing.
pid_t startGetImage(Window window, Pixmap pixmap) {
    std::string windowText = std::to_string(window);
    std::string pixmapText = std::to_string(pixmap);
    std::string program = "xscreensaver-getimage";
    char* arguments[] = {program.data(), windowText.data(), pixmapText.data(), nullptr};
    // Give the program a new process group, so that a signal to the group also ends the programs that it starts. Reset
    // the actions of all signals. Otherwise, the new program would also ignore the signals that this program ignores.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    pid_t process = 0;
    const int error =
        posix_spawnp(&process, program.c_str(), nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    if (error == 0) {
        return process;
    }
    throw cannotGrab("because xscreensaver-getimage is not installed");
}

/// Waits until the process ends. Kills the process after `maxGrabTime`, or if `cancelled` becomes true. Returns true if
/// the process succeeded.
bool succeeds(pid_t process, const std::atomic<bool>& cancelled) {
    const auto end = std::chrono::steady_clock::now() + maxGrabTime;
    int status = 0;
    while (waitpid(process, &status, WNOHANG) == 0) {
        if (cancelled || std::chrono::steady_clock::now() > end) {
            kill(-process, SIGKILL);
        }
        std::this_thread::sleep_for(checkInterval);
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Returns one colour channel of a pixel, 0 to 255. The mask contains the bits of this channel.
std::uint8_t channel(unsigned long pixel, unsigned long mask) {
    const unsigned long value = (pixel & mask) >> std::countr_zero(mask);
    const unsigned long max = mask >> std::countr_zero(mask);
    return static_cast<std::uint8_t>(value * 255 / max);
}

hostkit::Image imageOf(XImage& grabbed) {
    hostkit::Image image{grabbed.width, grabbed.height, {}};
    image.rgba.reserve(4 * static_cast<std::size_t>(grabbed.width) *
                       static_cast<std::size_t>(grabbed.height));
    for (int y = 0; y < grabbed.height; ++y) {
        for (int x = 0; x < grabbed.width; ++x) {
            const unsigned long pixel = XGetPixel(&grabbed, x, y);
            image.rgba.insert(image.rgba.end(),
                              {channel(pixel, grabbed.red_mask), channel(pixel, grabbed.green_mask),
                               channel(pixel, grabbed.blue_mask), 255});
        }
    }
    return image;
}

}  // namespace

void findGrabProgram() {
    const char* path = std::getenv("PATH");
    setenv("PATH",
           (std::string(path != nullptr ? path : "/usr/bin:/bin") + ":" + programFolder).c_str(),
           1);
}

hostkit::Image grabPicture(unsigned long window, const std::atomic<bool>& cancelled) {
    const std::unique_ptr<Display, CloseDisplay> display(XOpenDisplay(nullptr));
    XWindowAttributes attributes{};
    if (!display || XGetWindowAttributes(display.get(), window, &attributes) == 0) {
        throw cannotGrab("because the window no longer exists");
    }
    const auto width = static_cast<unsigned>(attributes.width);
    const auto height = static_cast<unsigned>(attributes.height);
    // The pixmap is freed when the connection is closed.
    const Pixmap pixmap = XCreatePixmap(display.get(), window, width, height,
                                        static_cast<unsigned>(attributes.depth));
    XSync(display.get(), False);
    if (!succeeds(startGetImage(window, pixmap), cancelled)) {
        throw cannotGrab("because xscreensaver-getimage failed");
    }
    const std::unique_ptr<XImage, DestroyImage> grabbed(
        XGetImage(display.get(), pixmap, 0, 0, width, height, AllPlanes, ZPixmap));
    if (!grabbed) {
        throw cannotGrab("because its pixels cannot be read");
    }
    // XGetImage sets no colour masks in the image of a pixmap, so copy them from the window's visual.
    grabbed->red_mask = attributes.visual->red_mask;
    grabbed->green_mask = attributes.visual->green_mask;
    grabbed->blue_mask = attributes.visual->blue_mask;
    return imageOf(*grabbed);
}

}  // namespace saver
