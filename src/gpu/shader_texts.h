#pragma once

// The GLSL ES 1.00 shaders of gpu/shaders as strings.

extern const char quadVertexShader[];
extern const char advectFragmentShader[];
extern const char impulseFragmentShader[];
extern const char waterVertexShader[];
extern const char waterFragmentShader[];
extern const char waterInkFragmentShader[];
