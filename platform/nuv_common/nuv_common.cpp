#include <EGL/egl.h>

#include <cstdint>
#include <ctime>
#include <map>

#include "kit/oru.h"

// Defines the symbols of the rendering kit that libpeluxVelmora imports. src/kit/oru.h declares them.

std::map<EGLContext, oru::ContextTextures> gTextureMap;

namespace oru {

std::uint8_t Timer::mIsPaused = 0;
float Timer::mPausedTime = 0.0f;
timespec Timer::mStartingCnt{};
timespec Timer::mCurrentCnt{};

float IAnimationManager::mNow = 0.0f;

float Drawable::mViewMatrix[16];
float Drawable::mProjectionMatrix[16];
float Drawable::mIdentityMatrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// The vector allocates memory, so a leak checker notices a scene that does not destroy its model object.
ModelObject::ModelObject() : mVertices(12) {}

}  // namespace oru
