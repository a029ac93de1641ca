#include "kit/oru.h"

// The kit's library as far as libpeluxVelmora imports it: the storage behind the declarations of kit/oru.h.

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

/// Takes storage at once, so that a leak checker sees a scene that does not release it.
ModelObject::ModelObject() : mVertices(12) {}

}  // namespace oru
