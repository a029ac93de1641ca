precision mediump float;
// Adds ink at a touch: a band along the stroke in mode 2 (fast drag), a round blot in all other modes. Positions are in
// screen pixels, y up. The density is split over two 8-bit channels: density = 255 * high + low. All variables are
// highp: with 16 bits, a position is wrong by up to a pixel and a density by up to 1/16.

uniform highp sampler2D Source;
uniform highp vec2 Scale;
uniform highp vec2 current;
uniform highp vec2 previous;
uniform highp vec2 normal;
uniform int mode;
uniform highp float len;
uniform highp float ImpulseDensity;
uniform highp float Radius;
varying highp vec2 v_texCoord;

highp vec2 encode(highp float v) {
    v = clamp(v, -127.0, 127.0);
    highp vec2 p = vec2(fract(v / 255.0), fract(v));
    p.x = p.x - p.y / 255.0;
    return p;
}

void main() {
    highp vec4 ink = texture2D(Source, v_texCoord);
    highp float x = 255.0 * ink.r + ink.g;
    highp vec2 p = Scale * v_texCoord;
    if (mode == 2) {
        highp float t = dot(normal, p - previous);
        if (t > 0.0 && t < len) {
            highp vec2 projected = previous + t * normal;
            highp float d = distance(projected, p);
            if (d < Radius) {
                x = x + ImpulseDensity * exp(-d * d / (0.8 * Radius * Radius));
            }
        }
    } else {
        highp float d = distance(current, p);
        if (d < Radius) {
            x = x + ImpulseDensity / (1.0 + d);
        }
    }
    gl_FragColor = vec4(encode(x), 0.0, 0.0);
}
