#include "app/effect_probe.h"

#include <GLES2/gl2.h>

#include <span>
#include <string_view>

#include "hostkit/gl_observer.h"
#include "velmora/solver_grid.h"

namespace app {

namespace {

using velmora::pixelsPerCell;

/// Texture unit to which the library binds the ink while it draws the water mesh. The probe recognises this moment by
/// the call of glDrawElements, which the library uses only for the water mesh.
constexpr GLenum inkUnit = GL_TEXTURE2;

GLuint textureOfUnit(GLenum unit) {
    GLint active = 0;
    GLint texture = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glActiveTexture(unit);
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &texture);
    glActiveTexture(static_cast<GLenum>(active));
    return static_cast<GLuint>(texture);
}

void setOnce(FrameMoments::Moment& moment) {
    if (!moment) {
        moment = std::chrono::steady_clock::now();
    }
}

}  // namespace

EffectProbe::EffectProbe() : observer(hostkit::sharedGlObserver()) {
    observer.inside = [this](const char* function) { seeCall(function); };
    observer.textureUpload = [this](int width, int height, std::span<const std::uint8_t> bytes) {
        seeUpload(width, height, bytes);
    };
}

EffectProbe::~EffectProbe() {
    observer.inside = nullptr;
    observer.textureUpload = nullptr;
}

void EffectProbe::watch(Size size, bool hostHasInk) {
    screen = size;
    hasInk = hostHasInk;
    digest = {};
    field = {};
    ink = 0;
    lastMoments = {};
}

void EffectProbe::draw(hostkit::EffectHost& host) {
    lastMoments = {};
    drawing = true;
    host.draw();
    drawing = false;
}

Size EffectProbe::inkTextureSize() const {
    using velmora::inkLongSide;
    using velmora::inkShortSide;
    return screen.width > screen.height ? Size{inkLongSide, inkShortSide}
                                        : Size{inkShortSide, inkLongSide};
}

void EffectProbe::seeCall(const char* function) {
    if (!drawing) {
        return;
    }
    const std::string_view name = function;
    setOnce(lastMoments.begin);
    if (name.starts_with("glDraw")) {
        setOnce(lastMoments.firstDraw);
    }
    if (hasInk && name == "glDrawElements") {
        ink = textureOfUnit(inkUnit);
    }
}

void EffectProbe::seeUpload(int width, int height, std::span<const std::uint8_t> bytes) {
    if (drawing && width == screen.width / pixelsPerCell &&
        height == screen.height / pixelsPerCell) {
        setOnce(lastMoments.solverDone);
        addBytes(digest, std::as_bytes(bytes));
        field.columns = width;
        field.rows = height;
        field.bytes.assign(bytes.begin(), bytes.end());
    }
}

}  // namespace app
