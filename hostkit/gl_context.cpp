#include "hostkit/gl_context.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "hostkit/host_error.h"

namespace hostkit {

namespace {

[[noreturn]] void failWith(const char* call) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%X", static_cast<unsigned>(eglGetError()));
    throw HostError("cannot create an OpenGL ES 2.0 context: " + std::string(call) +
                    " failed with EGL error " + code + "; check that the GL driver is installed");
}

/// Returns the display of the software rasteriser. It draws the same pixels on every machine.
EGLDisplay softwareDisplay() {
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 0);
    askForFineFiltering();
    return eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
}

/// Returns the display of the first graphics card, or EGL_NO_DISPLAY if there is no card.
EGLDisplay cardDisplay() {
    const auto queryDevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    const auto queryDeviceString = reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(
        eglGetProcAddress("eglQueryDeviceStringEXT"));
    EGLDeviceEXT devices[8];
    EGLint count = 0;
    if (!queryDevices || !queryDeviceString || !queryDevices(8, devices, &count)) {
        return EGL_NO_DISPLAY;
    }
    for (EGLint i = 0; i < count; ++i) {
        const char* const extensions = queryDeviceString(devices[i], EGL_EXTENSIONS);
        const bool isSoftware =
            extensions &&
            std::string_view(extensions).find("EGL_MESA_device_software") != std::string_view::npos;
        if (!isSoftware) {
            return eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
        }
    }
    return EGL_NO_DISPLAY;
}

/// Returns the EGL display, which the first call initializes. The display exists until the program ends, so contexts
/// can be created and destroyed at any time.
EGLDisplay sharedDisplay() {
    static const EGLDisplay display = usesGraphicsCard() ? cardDisplay() : softwareDisplay();
    if (display == EGL_NO_DISPLAY && usesGraphicsCard()) {
        throw HostError("no graphics card was found; unset VELMORA_GPU to draw in software");
    }
    if (display == EGL_NO_DISPLAY) {
        failWith("eglGetPlatformDisplay");
    }
    if (!eglInitialize(display, nullptr, nullptr)) {
        failWith("eglInitialize");
    }
    return display;
}

EGLConfig chooseConfig(EGLDisplay display) {
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_ES2_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_ALPHA_SIZE,
                             8,
                             EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, &config, 1, &count) || count < 1) {
        failWith("eglChooseConfig");
    }
    return config;
}

}  // namespace

void askForFineFiltering() {
    // By default, the rasteriser computes filtered texture values with 8 bits. Ink is filtered hundreds of times while
    // it flows. With 8 bits, thin ink would look grainy.
    setenv("GALLIVM_PERF", "no_aos_sampling", 0);
}

bool usesGraphicsCard() {
    const char* const value = std::getenv("VELMORA_GPU");
    return value != nullptr && std::string_view(value) == "1";
}

GlContext::GlContext(void* onDisplay, int width, int height)
    : display(onDisplay), surfaceWidth(width), surfaceHeight(height) {}

// Delegates to the private constructor. When that constructor returns, the object counts as constructed. So if the body
// below throws, C++ runs the destructor, which frees the context.
GlContext::GlContext(int width, int height) : GlContext(sharedDisplay(), width, height) {
    const EGLConfig config = chooseConfig(display);
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLint version[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    eglBindAPI(EGL_OPENGL_ES_API);
    surface = eglCreatePbufferSurface(display, config, size);
    if (surface == EGL_NO_SURFACE) {
        failWith("eglCreatePbufferSurface");
    }
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, version);
    if (context == EGL_NO_CONTEXT) {
        failWith("eglCreateContext");
    }
    makeCurrent();
}

GlContext::~GlContext() {
    if (context && eglGetCurrentContext() == context) {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    if (context) {
        eglDestroyContext(display, context);
    }
    if (surface) {
        eglDestroySurface(display, surface);
    }
}

GlContext::GlContext(GlContext&& other) noexcept
    : display(other.display),
      context(std::exchange(other.context, nullptr)),
      surface(std::exchange(other.surface, nullptr)),
      surfaceWidth(other.surfaceWidth),
      surfaceHeight(other.surfaceHeight) {}

GlContext& GlContext::operator=(GlContext&& other) noexcept {
    std::swap(display, other.display);
    std::swap(context, other.context);
    std::swap(surface, other.surface);
    std::swap(surfaceWidth, other.surfaceWidth);
    std::swap(surfaceHeight, other.surfaceHeight);
    return *this;
}

void GlContext::makeCurrent() const {
    if (!eglMakeCurrent(display, surface, surface, context)) {
        failWith("eglMakeCurrent");
    }
}

}  // namespace hostkit
