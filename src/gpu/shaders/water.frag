precision mediump float;
// Draws the water of a frame that has no ink.

uniform float viewportHeight;
#include "waterSurface.glsl"

void main() {
    gl_FragColor = vec4(waterSurface(5.5), 1.0);
}
