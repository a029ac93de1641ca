precision mediump float;
// Semi-Lagrangian advection of the ink: each texel copies the ink from upstream and multiplies it by Dissipation. A
// number is split over two 8-bit channels: number = 255 * high + low. Velocities are stored with 127 added. All
// variables are highp. With 16 bits, a coordinate is wrong by up to half a texel and a density by up to 1/16. Over a
// hundred passes, such errors add up.

uniform highp sampler2D VelocityTexture;
uniform highp sampler2D SourceTexture;
uniform highp vec2 TimeStep;
uniform highp float BackwardStepSize;
uniform highp float Dissipation;
uniform highp vec2 Scale;
uniform highp vec2 center;
uniform int drag;
varying highp vec2 v_texCoord;

highp vec2 encode(highp float v) {
    v = clamp(v, -127.0, 127.0);
    highp vec2 p = fract(v * vec2(0.00392157, 1.0));
    p.x = p.x - p.y / 255.0;
    return p;
}

void main() {
    highp vec4 flow = texture2D(VelocityTexture, v_texCoord);
    highp vec2 u = vec2(255.0 * flow.r + flow.g - 127.0, 255.0 * flow.b + flow.a - 127.0);

    // In all modes except a fast drag, ink within 80 pixels of the finger moves less. The nearer the finger, the less
    // it moves.
    highp float back_step = BackwardStepSize;
    if (drag < 2) {
        highp float d = distance(center, Scale * v_texCoord);
        if (d < 80.0) {
            back_step = 0.0075 * d;
        }
    }

    highp vec2 coord = v_texCoord - back_step * TimeStep * u * 0.25;
    highp vec4 ink = texture2D(SourceTexture, coord);
    gl_FragColor = vec4(encode(Dissipation * (255.0 * ink.r + ink.g)), 0.0, 0.0);
}
