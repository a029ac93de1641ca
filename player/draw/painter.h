#pragma once

#include <optional>

#include "player/draw/canvas.h"
#include "player/draw/font_scale.h"
#include "player/draw/imgui_renderer.h"
#include "player/draw/thumbnails.h"

struct ImGuiContext;

namespace player {

/// Owns the ImGui context and the GL objects with which the player draws over the library's frame.
/// A process has at most one painter at a time.
class Painter {
public:
    Painter();
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// Creates the GL objects in the current context. Throws Failure.
    void setUp();
    /// Sets the scale of font and style. Call it between two ImGui frames.
    void setScale(const FontScale& wanted);
    /// Deletes the GL objects. Call it before their context is destroyed.
    void tearDown();

    Canvas& canvas() { return *frameCanvas; }
    Thumbnails& thumbnails() { return *presetThumbnails; }
    /// Draws the ImGui frame.
    void draw();

private:
    ImGuiContext* context;
    FontScale scale;
    std::optional<Canvas> frameCanvas;
    std::optional<ImGuiRenderer> renderer;
    std::optional<Thumbnails> presetThumbnails;
};

}  // namespace player
