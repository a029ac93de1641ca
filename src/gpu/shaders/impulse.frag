// Adds ink at a touch: a band along the stroke in mode 2, else a blot. Positions are in screen pixels, y up. The
// density is split over two 8-bit channels as 255 * high + low.
precision mediump float;

uniform sampler2D Source;
uniform vec2 Scale;
uniform vec2 current;
uniform vec2 previous;
uniform vec2 normal;
uniform int mode;
uniform float len;
uniform float ImpulseDensity;
uniform float Radius;
varying highp vec2 v_texCoord;

vec2 encode(float v) {
    v = clamp(v, -127.0, 127.0);
    vec2 p = vec2(fract(v / 255.0), fract(v));
    p.x = p.x - p.y / 255.0;
    return p;
}

void main() {
    vec4 ink = texture2D(Source, v_texCoord);
    float x = 255.0 * ink.r + ink.g;
    vec2 p = Scale * v_texCoord;
    if (mode == 2) {
        float t = dot(normal, p - previous);
        if (t > 0.0 && t < len) {
            vec2 projected = previous + t * normal;
            float d = distance(projected, p);
            if (d < Radius) {
                x = x + ImpulseDensity * exp(-d * d / (0.8 * Radius * Radius));
            }
        }
    } else {
        float d = distance(current, p);
        if (d < Radius) {
            x = x + ImpulseDensity / (1.0 + d);
        }
    }
    gl_FragColor = vec4(encode(x), 0.0, 0.0);
}
