uniform sampler2D sWaterTexture;
uniform sampler2D sBGTexture;
uniform float alphaRatio1;
uniform float fresnelRatio;
uniform float specularRatio;
uniform float exponent;
varying vec2 vWaterTextureCoord;
varying vec2 vBGTexture1Coord;
varying vec3 vNormal;
varying vec3 vHalfVec;
varying float vHeights;

// Returns the refracted background plus the lit reflection map, which grows with the height of the water.
vec3 waterSurface(float specularLimit) {
    vec4 waterColor = texture2D(sWaterTexture, vWaterTextureCoord);
    vec4 bgColor = texture2D(sBGTexture, vBGTexture1Coord);
    float NdotHV = max(dot(vNormal, vHalfVec), 0.0);
    float t = clamp(abs(vHeights), 0.0, 1.13);
    float specular = clamp(specularRatio * pow(NdotHV, exponent), 1.0, specularLimit);
    float NdotL = max(dot(vNormal, vec3(5.0, -5.0, 1.0)), 0.0);
    return t * specular * waterColor.rgb *
               (alphaRatio1 + fresnelRatio * clamp(NdotL - 0.99, 0.0, 0.3)) +
           bgColor.rgb;
}
