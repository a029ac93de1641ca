#pragma once

#include <memory>
#include <optional>

#include "player/window/canvas.h"
#include "player/window/gl_window.h"
#include "player/window/imgui_renderer.h"

struct ImGuiContext;

namespace player {

/// The window with all that the player itself draws in it.
class Screen {
public:
    /// Throws Failure.
    explicit Screen(Size size);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// A new GL context with what the player draws with set up in it.
    void renewContext();
    void beginPanel();
    void drawPanel();

    GlWindow& window() { return glWindow; }
    Canvas& canvas() { return *pictureCanvas; }

private:
    void setUp();

    GlWindow glWindow;
    ImGuiContext* panel;
    std::optional<Canvas> pictureCanvas;
    std::optional<ImGuiRenderer> renderer;
};

}  // namespace player
