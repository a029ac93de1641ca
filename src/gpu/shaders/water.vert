// Refracts a ray from an eye at z = -30 (mesh units) at the vertex and intersects it with the background plane at z =
// 30.9. aHeights holds the height of the vertex, of its neighbour along x and of its neighbour along y.
uniform mat4 uMVPMatrix;
uniform float uMESH_SIZE_WIDTH;
uniform float uMESH_SIZE_HEIGHT;
uniform float uNUM_DETAILS_WIDTH;
uniform float uNUM_DETAILS_HEIGHT;
uniform float uRefractiveIndex;
attribute vec4 aPosition;
attribute vec4 aHeights;
varying vec2 vWaterTextureCoord;
varying vec2 vBGTexture1Coord;
varying vec3 vNormal;
varying vec3 vHalfVec;
varying float vHeights;

void main() {
    vec4 pos = aPosition;
    float h = aHeights.x;
    float maxX = uMESH_SIZE_WIDTH / 2.0;
    float maxY = uMESH_SIZE_HEIGHT / 2.0;
    float rimo = uRefractiveIndex - 1.0;

    vec3 v = vec3(pos.x, pos.y, h * 0.25);
    vec2 n = (vec2(h, h) - aHeights.yz) * 0.25;
    float nz = sqrt(dot(n, n) + 1.0);
    n = n / nz;

    vec3 d = vec3(v.x, v.y, v.z + 30.0);
    d = d / length(d);
    float t = dot(d, vec3(n.x, n.y, 1.0)) * rimo;
    d.x = d.x + n.x * t;
    d.y = d.y + n.y * t;

    float r0 = (30.9 - v.z) / d.z;
    float u0 = (d.x * r0 + v.x) / maxX * 0.25 + 0.5;
    float v0 = (d.y * r0 + v.y) / maxY * (-0.25) + 0.5;

    vWaterTextureCoord = vec2(n.x * 0.5 + 0.5 + pos.y / uMESH_SIZE_WIDTH * 0.25,
                              n.y * 0.5 + 0.5 + pos.x / uMESH_SIZE_HEIGHT * 0.25);
    vBGTexture1Coord = vec2(u0, v0);
    vNormal = normalize(vec3(n.x, n.y, 0.6));
    vHalfVec = normalize(normalize(vec3(0.0, 0.0, 1.0) - (uMVPMatrix * pos).xyz) +
                         (uMVPMatrix * vec4(5.0, -5.0, 1.0, 1.0)).xyz);
    vHeights = h;
    gl_Position = uMVPMatrix * pos;
}
