#pragma once

#include <optional>

#include "app/effect_probe.h"
#include "app/size.h"
#include "hostkit/gl_context.h"
#include "hostkit/image.h"
#include "player/draw/draw_overlays.h"
#include "player/draw/overlays.h"
#include "player/draw/painter.h"

namespace player {

/// Off-screen GL context of a film. Draws the overlays over the library's frame.
class FilmScreen {
public:
    /// Creates the context and makes it current. Throws HostError or Failure, as renewContext does.
    FilmScreen(app::Size screen, Overlays shown);

    /// Replaces the context and its GL objects.
    void renewContext();
    void drawOver(const app::EffectProbe& probe);
    /// Returns the frame on the screen as an opaque image.
    hostkit::Image shown() const;

private:
    app::Size size;
    Overlays overlays;
    std::optional<hostkit::GlContext> context;
    /// Painter of the overlays. Empty if no overlay is on.
    std::optional<Painter> painter;
};

}  // namespace player
