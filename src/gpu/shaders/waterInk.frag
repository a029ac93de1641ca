precision mediump float;
// Draws water that ink darkens. velmora/ink_light.h has the same formula in C++. The density is split over two 8-bit
// channels: density = 255 * high + low.

uniform sampler2D Density;
uniform vec2 Scale;
uniform float intensity;
uniform vec3 ink_color;
#include "waterSurface.glsl"

void main() {
    vec4 density = texture2D(Density, gl_FragCoord.xy * Scale);
    float w = intensity * (255.0 * density.r + density.g);
    gl_FragColor = vec4(waterSurface(4.5) / (1.0 + w * ink_color), 1.0);
}
