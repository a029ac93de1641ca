#pragma once

#include <GLES2/gl2.h>

struct ImDrawData;
struct ImDrawList;

namespace player {

/// Draws the panel's triangles with OpenGL ES 2.0. It is our own as Debian builds ImGui's back ends
/// only for desktop GL, found by GLX; their source for ES 2 comes as an example in /usr/share/doc.
/// Belongs to the GL context that was current when it was made, and dies before it.
class ImGuiRenderer {
public:
    /// Uploads the font.
    ImGuiRenderer();
    ~ImGuiRenderer();
    ImGuiRenderer(const ImGuiRenderer&) = delete;
    ImGuiRenderer& operator=(const ImGuiRenderer&) = delete;

    /// Takes that of the current ImGui context over. Leaves GL as it was, as drawing does.
    void uploadFont();
    void draw(const ImDrawData& data);

private:
    void prepare(const ImDrawData& data);
    void drawList(const ImDrawList& list, const ImDrawData& data);

    GLuint program;
    GLuint font = 0;
    GLuint buffers[2] = {};
};

}  // namespace player
