#include "player/effect_tap.h"

#include <GLES2/gl2.h>

#include <string_view>

#include "hostkit/gl_recorder.h"
#include "velmora/solver_grid.h"

namespace player {
namespace {

using velmora::pixelsPerCell;

GLuint textureOfUnit(GLenum unit) {
    GLint active = 0;
    GLint texture = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glActiveTexture(unit);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    glActiveTexture(static_cast<GLenum>(active));
    return static_cast<GLuint>(texture);
}

}  // namespace

EffectTap::EffectTap() {
    hostkit::glRecorder().inside = [this](const char* function) { seeCall(function); };
    hostkit::glRecorder().textureUpload = [this](int width, int height,
                                                 std::span<const std::uint8_t> bytes) {
        seeUpload(width, height, bytes);
    };
}

EffectTap::~EffectTap() {
    hostkit::glRecorder().reset();
}

void EffectTap::watch(Size screenOfHost, bool hostHasInk) {
    screen = screenOfHost;
    hasInk = hostHasInk;
    digest = {};
    field = {};
    ink = 0;
    ready.reset();
}

void EffectTap::draw(hostkit::EffectHost& host) {
    ready.reset();
    drawing = true;
    host.draw();
    drawing = false;
}

void EffectTap::seeCall(const char* function) {
    if (!drawing || !hasInk) {
        return;
    }
    const std::string_view name = function;
    if (!ready && name == "glBindTexture") {
        ready = std::chrono::steady_clock::now();  // the velocities get uploaded
    } else if (name == "glDrawElements") {
        ink = textureOfUnit(GL_TEXTURE2);  // the water is drawn over the picture with it
    }
}

void EffectTap::seeUpload(int width, int height, std::span<const std::uint8_t> bytes) {
    if (drawing && width == screen.width / pixelsPerCell &&
        height == screen.height / pixelsPerCell) {
        addBytes(digest, std::as_bytes(bytes));
        field.columns = width;
        field.rows = height;
        field.bytes.assign(bytes.begin(), bytes.end());
    }
}

}  // namespace player
