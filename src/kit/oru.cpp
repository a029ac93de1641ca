#include "kit/oru.h"

#include <android/log.h>

#include <algorithm>
#include <cstdlib>

namespace oru {

namespace {

constexpr char logTag[] = "nuv.oru";
/// Tangent of half the vertical field of view.
constexpr float halfViewTangent = 0.55785173f;

/// Sets the view matrix to the identity and all elements of the projection matrix to 0.
void resetCamera() {
    std::copy_n(Drawable::mIdentityMatrix, 16, Drawable::mViewMatrix);
    std::fill_n(Drawable::mProjectionMatrix, 16, 0.0f);
}

}  // namespace

Scene::Scene(IAnimationManager& manager)
    : animationManager(&manager), context(eglGetCurrentContext()) {
    // The library calls srand only here. A process that creates no scene gets the same random numbers in every run.
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    contextTextures = &gTextureMap[context];
    for (const auto& [key, texture] : *contextTextures) {
        if (std::find(textures.begin(), textures.end(), texture) == textures.end()) {
            textures.push_back(texture);
        }
    }
}

Scene::~Scene() {
    delete ownedObject;
    ownedObject = nullptr;  // the animations that are notified next may still read the scene
    animationManager->notifyAnimations();
    if (!renderers.empty()) {
        __android_log_print(ANDROID_LOG_ERROR, logTag, "WARNING: Renderer leaked!!!!!!!");
    }
    if (!shaders.empty()) {
        __android_log_print(ANDROID_LOG_ERROR, logTag, "WARNING: Shader leaked!!!!!!!");
    }
}

void Scene::setOrthographicCamera() {
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(height);
    resetCamera();
    float* projection = Drawable::mProjectionMatrix;
    projection[0] = 2.0f / w;
    projection[5] = 2.0f / h;
    projection[10] = -0.001f;
    projection[12] = w / -w;
    projection[13] = h / -h;
    projection[15] = 1.0f;
}

void Scene::setPerspectiveCamera() {
    resetCamera();
    float* projection = Drawable::mProjectionMatrix;
    projection[0] = 1.0f / (view.aspectRatio * halfViewTangent);
    projection[5] = 1.792591f;  // 1 / halfViewTangent.
    projection[10] = -1.0002f;  // (far + near) / (near - far).
    projection[11] = -1.0f;
    projection[14] = -2.0002f;  // 2 * far * near / (near - far).
}

}  // namespace oru
