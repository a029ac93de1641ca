#include "player/draw/imgui_renderer.h"

#include <imgui.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "app/gl_state.h"

namespace player {
namespace {

constexpr const char* vertexText = R"(
uniform vec4 uView;  // origin and size of the display
attribute vec2 aPosition;
attribute vec2 aTexture;
attribute vec4 aColor;
varying vec2 vTexture;
varying vec4 vColor;
void main() {
    vTexture = aTexture;
    vColor = aColor;
    vec2 part = (aPosition - uView.xy) / uView.zw;
    gl_Position = vec4(2.0 * part.x - 1.0, 1.0 - 2.0 * part.y, 0.0, 1.0);
}
)";

constexpr const char* fragmentText = R"(
precision mediump float;
uniform sampler2D sTexture;
varying vec2 vTexture;
varying vec4 vColor;
void main() {
    gl_FragColor = vColor * texture2D(sTexture, vTexture);
}
)";

void setVertexAttribute(GLuint location, GLint size, GLenum type, std::size_t offset) {
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, size, type, type == GL_UNSIGNED_BYTE, sizeof(ImDrawVert),
                          reinterpret_cast<const void*>(offset));
}

/// Sets the scissor to a rectangle of the display. Returns false if the rectangle is empty.
bool clip(const ImVec4& rectangle, const ImDrawData& data) {
    const ImVec2 scale = data.FramebufferScale;
    const float left = (rectangle.x - data.DisplayPos.x) * scale.x;
    const float right = (rectangle.z - data.DisplayPos.x) * scale.x;
    const float top = (rectangle.y - data.DisplayPos.y) * scale.y;
    const float bottom = (rectangle.w - data.DisplayPos.y) * scale.y;
    if (right <= left || bottom <= top) {
        return false;
    }
    glScissor(static_cast<GLint>(left), static_cast<GLint>(data.DisplaySize.y * scale.y - bottom),
              static_cast<GLsizei>(right - left), static_cast<GLsizei>(bottom - top));
    return true;
}

}  // namespace

ImGuiRenderer::ImGuiRenderer()
    : program(app::buildGlProgram(vertexText, fragmentText, {"aPosition", "aTexture", "aColor"})) {
    glGenTextures(1, &font);
    glGenBuffers(2, buffers);
    uploadFont();
}

ImGuiRenderer::~ImGuiRenderer() {
    glDeleteTextures(1, &font);
    glDeleteBuffers(2, buffers);
    glDeleteProgram(program);
}

void ImGuiRenderer::uploadFont() {
    const app::GlStateGuard guard;
    unsigned char* pixels = nullptr;
    int width = 0;
    int height = 0;
    ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    atlas.GetTexDataAsRGBA32(&pixels, &width, &height);
    atlas.SetTexID(reinterpret_cast<ImTextureID>(static_cast<std::uintptr_t>(font)));
    glBindTexture(GL_TEXTURE_2D, font);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

void ImGuiRenderer::draw(const ImDrawData& data) {
    const app::GlStateGuard guard;
    prepare(data);
    for (int list = 0; list < data.CmdListsCount; ++list) {
        drawList(*data.CmdLists[list], data);
    }
    for (const GLuint location : {0u, 1u, 2u}) {
        glDisableVertexAttribArray(location);
    }
}

void ImGuiRenderer::prepare(const ImDrawData& data) {
    glViewport(0, 0, static_cast<GLsizei>(data.DisplaySize.x * data.FramebufferScale.x),
               static_cast<GLsizei>(data.DisplaySize.y * data.FramebufferScale.y));
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_SCISSOR_TEST);
    glUseProgram(program);
    glUniform1i(glGetUniformLocation(program, "sTexture"), 0);
    glUniform4f(glGetUniformLocation(program, "uView"), data.DisplayPos.x, data.DisplayPos.y,
                data.DisplaySize.x, data.DisplaySize.y);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
    setVertexAttribute(0, 2, GL_FLOAT, offsetof(ImDrawVert, pos));
    setVertexAttribute(1, 2, GL_FLOAT, offsetof(ImDrawVert, uv));
    setVertexAttribute(2, 4, GL_UNSIGNED_BYTE, offsetof(ImDrawVert, col));
}

void ImGuiRenderer::drawList(const ImDrawList& list, const ImDrawData& data) {
    glBufferData(GL_ARRAY_BUFFER, list.VtxBuffer.size_in_bytes(), list.VtxBuffer.Data,
                 GL_STREAM_DRAW);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, list.IdxBuffer.size_in_bytes(), list.IdxBuffer.Data,
                 GL_STREAM_DRAW);
    for (const ImDrawCmd& command : list.CmdBuffer) {
        if (!clip(command.ClipRect, data)) {
            continue;
        }
        const auto texture = reinterpret_cast<std::uintptr_t>(command.GetTexID());
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(command.ElemCount), GL_UNSIGNED_SHORT,
                       reinterpret_cast<const void*>(command.IdxOffset * sizeof(ImDrawIdx)));
    }
}

}  // namespace player
