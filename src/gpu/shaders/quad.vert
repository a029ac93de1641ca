// Draws a quad that covers the whole target.
attribute vec4 vertex;
attribute highp vec2 texCoord;
varying highp vec2 v_texCoord;

void main() {
    gl_Position = vertex;
    v_texCoord = texCoord;
}
