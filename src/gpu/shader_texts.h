#pragma once

// GLSL ES 1.00 source texts of the shaders in gpu/shaders.

extern const char quadVertexShader[];
extern const char advectFragmentShader[];
extern const char impulseFragmentShader[];
extern const char waterVertexShader[];
extern const char waterFragmentShader[];
extern const char waterInkFragmentShader[];
