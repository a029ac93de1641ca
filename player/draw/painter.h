#pragma once

#include <optional>

#include "player/draw/canvas.h"
#include "player/draw/font_scale.h"
#include "player/draw/imgui_renderer.h"
#include "player/draw/thumbnails.h"

struct ImGuiContext;

namespace player {

/// What the player itself draws with, over the library's picture. One at a time: it owns the
/// current ImGui context.
class Painter {
public:
    Painter();
    ~Painter();
    Painter(const Painter&) = delete;
    Painter& operator=(const Painter&) = delete;

    /// Makes the GL objects in the current context. Throws Failure.
    void setUp();
    /// Between two ImGui frames.
    void setScale(const FontScale& wanted);
    /// Gives them back before their context goes.
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
