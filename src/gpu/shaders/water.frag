precision mediump float;
// Draws the water in a frame without ink.

uniform float viewportHeight;
#include "waterSurface.glsl"

void main() {
    gl_FragColor = vec4(waterSurface(5.5), 1.0);
}
