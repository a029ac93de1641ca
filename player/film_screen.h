#pragma once

#include <optional>

#include "app/size.h"
#include "hostkit/gl_context.h"
#include "hostkit/instruments/effect_probe.h"
#include "hostkit/picture.h"
#include "player/draw/draw_overlays.h"
#include "player/draw/overlays.h"
#include "player/draw/painter.h"

namespace player {

/// The off-screen GL context of a film, with the overlays over the library's picture.
class FilmScreen {
public:
    /// The context is current from here on. Throws HostError or Failure, as renewContext does.
    FilmScreen(app::Size screen, Overlays shown);

    /// A new context in place of the old one and all in it.
    void renewContext();
    void drawOver(const hostkit::EffectProbe& probe);
    /// What the screen shows, opaque.
    hostkit::Picture shown() const;

private:
    app::Size size;
    Overlays overlays;
    std::optional<hostkit::GlContext> context;
    /// Absent where no overlay is shown.
    std::optional<Painter> painter;
};

}  // namespace player
