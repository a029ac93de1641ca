#pragma once

#include <GLES2/gl2.h>

struct ImDrawData;
struct ImDrawList;

namespace player {

/// Draws ImGui's triangles with OpenGL ES 2.0. Debian's ImGui package has a compiled renderer for desktop GL only.
/// Belongs to the GL context that was current at construction and must be destroyed before that context.
class ImGuiRenderer {
public:
    ImGuiRenderer();
    ~ImGuiRenderer();
    ImGuiRenderer(const ImGuiRenderer&) = delete;
    ImGuiRenderer& operator=(const ImGuiRenderer&) = delete;

    /// Uploads the font of the current ImGui context. Restores the GL state.
    void uploadFont();
    /// Draws an ImGui frame. Restores the GL state.
    void draw(const ImDrawData& data);

private:
    void prepare(const ImDrawData& data);
    void drawList(const ImDrawList& list, const ImDrawData& data);

    GLuint program;
    GLuint font = 0;
    GLuint buffers[2] = {};
};

}  // namespace player
