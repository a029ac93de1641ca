#pragma once

#include <EGL/egl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "kit/oru.h"

// The memory layout of the scene and of the animation manager, as the binary of a rendering kit knows it: the offsets
// of fields and the slot numbers of virtual functions. This file uses no class of the library. If a field or slot of
// the library moves, the tests fail.

extern "C" void* createScene();

struct SceneMemory {
    void* slots;
    std::map<std::string, std::uint32_t>* contextTextures;
    std::set<std::string> names;
    std::int32_t size[2];
    float view[18];
    bool flags[4];
    std::uint32_t words[2];
    void* animationManager;
    oru::ModelObject model;
    void* ownedObject;
    std::uint32_t word;
    std::vector<std::string> strings;
    EGLContext context;
    std::vector<void*> renderers;
    std::vector<std::uint32_t> textures;
    std::vector<void*> shaders;
    std::vector<std::array<std::uint32_t, 9>> records;
};

struct ManagerMemory {
    void* slots;
    std::vector<void*> animations;
};

template <typename Result = void>
Result callSlot(void* object, std::size_t slot) {
    void* function = (*static_cast<void***>(object))[slot - 1];
    return reinterpret_cast<Result (*)(void*)>(function)(object);
}

inline constexpr std::size_t completeDestructor = 22, deletingDestructor = 23, orthographic = 24,
                             perspective = 25;
inline constexpr std::size_t queryAll = 1, notifyAll = 2, updateAll = 3;

inline SceneMemory* makeScene() {
    return static_cast<SceneMemory*>(createScene());
}
