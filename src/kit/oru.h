#pragma once

#include <EGL/egl.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <vector>

// Declarations of the part of the rendering kit libpeluxNuvCommon that this library uses. The imported names, the order
// of virtual functions and the order of fields must match the kit's. Only the kit's render thread uses these objects,
// so there are no locks.

// These names are imported from the kit's library, so they need default visibility.
#pragma GCC visibility push(default)

namespace oru {

/// The timer of the rendering kit. The kit can store any byte in `mIsPaused`, and any value except 0 means paused.
/// `mStartingCnt` and `mCurrentCnt` have the type timespec, because clock_gettime fills them.
struct Timer {
    static std::uint8_t mIsPaused;
    static float mPausedTime;      ///< Seconds, reported while paused.
    static timespec mStartingCnt;  ///< Set by the kit.
    static timespec mCurrentCnt;   ///< Set by the animation manager unless paused.
};

/// Interface to the clock and the list of animations. The kit calls the functions by their slots in the virtual table
/// and never destroys an object through this interface.
class IAnimationManager {
public:
    static float mNow;  ///< Animation time in seconds, set by `update`.

    virtual int anyAnimationResult() = 0;
    virtual void notifyAnimations() = 0;
    virtual void update() = 0;

protected:
    ~IAnimationManager() = default;
};

/// Matrices with which the kit draws: 16 floats, column-major.
struct Drawable {
    static float mViewMatrix[16];
    static float mProjectionMatrix[16];
    static float mIdentityMatrix[16];
};

/// A 3D model. The kit constructs it, and the scene that contains it destroys it. This header declares its fields as
/// one vector. The compiler can then generate the destructor, which calls no function of the kit.
class ModelObject {
public:
    ModelObject();

private:
    std::vector<float> mVertices;
};

/// GL texture names of one context, keyed by file name. A scene copies them in key order.
using ContextTextures = std::map<std::string, std::uint32_t>;

}  // namespace oru

/// Textures of each GL context. This library adds entries; only the kit removes them. The variable has C linkage,
/// because some compilers would otherwise add an ABI tag for std::string to its symbol.
extern "C" std::map<EGLContext, oru::ContextTextures> gTextureMap;

#pragma GCC visibility pop

namespace oru {

/// An animation of the kit. The destructor is protected, because animations are never deleted through this interface.
class IAnimation {
public:
    virtual void reserved1() = 0;  ///< Three operations that only the kit calls.
    virtual void reserved2() = 0;
    virtual void reserved3() = 0;
    virtual void update(float seconds) = 0;
    virtual int query() = 0;
    virtual void notify() = 0;

protected:
    ~IAnimation() = default;
};

/// An object of the kit. The virtual destructor must be declared first. It then takes the slots 1 and 2, and the kit
/// expects the deleting destructor in slot 2.
class IOwnedObject {
public:
    virtual ~IOwnedObject() = default;
};

/// View settings of the kit. This library reads only the aspect ratio, width / height.
struct ViewParameters {
    std::array<float, 4> leading{};
    float aspectRatio = 0.0f;
    std::array<float, 13> trailing{};
};

/// Nine 32-bit words that only the kit writes and reads.
using SceneRecord = std::array<std::uint32_t, 9>;

/// Base class of all scenes. The kit ships it as source code, so the compiler of each library lays out the virtual
/// table and the fields. The kit accesses the fields in place and calls the functions by slot. The functions are
/// defined in oru.cpp.
class Scene {
public:
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // Slots 1 to 21. Only the kit calls them. This library does not need them, so they ignore their arguments and do
    // nothing. Slot 7 returns the int 0, which a caller that expects a bool reads as false.
    virtual void operation1() {}
    virtual void operation2() {}
    virtual void operation3() {}
    virtual void operation4() {}
    virtual void operation5() = 0;
    virtual void operation6() = 0;
    virtual int operation7() = 0;
    virtual void operation8() {}
    virtual void operation9() {}
    virtual void operation10() {}
    virtual void operation11() {}
    virtual void operation12() {}
    virtual void operation13() {}
    virtual void operation14() {}
    virtual void operation15() {}
    virtual void operation16() {}
    virtual void operation17() {}
    virtual void operation18() {}
    virtual void operation19() {}
    virtual void operation20() {}
    virtual void operation21() {}

    /// Slots 22 and 23: the complete and the deleting destructor. Logs a warning if `renderers` or `shaders` is not
    /// empty.
    virtual ~Scene();

    /// Slot 24. Sets a projection that maps x in [0, width] and y in [0, height] to [-1, 1].
    virtual void setOrthographicCamera();

    /// Slot 25. Sets a projection with a vertical field of view of 58.31 degrees, near plane 1 and far plane 10000.
    virtual void setPerspectiveCamera();

    ContextTextures* contextTextures = nullptr;  ///< The entry of `context` in gTextureMap.
    std::set<std::string> names;                 ///< Filled by the kit, released here.
    std::int32_t width = 0;                      ///< Size of the view, set by the kit.
    std::int32_t height = 0;
    ViewParameters view;                   ///< Set by the kit.
    std::array<bool, 4> flags{};           ///< Used by the kit only.
    std::array<std::uint32_t, 2> words{};  ///< Used by the kit only.
    IAnimationManager* animationManager;   ///< Not owned; notified at destruction.
    ModelObject model;                     ///< Built by the kit, released here.
    IOwnedObject* ownedObject = nullptr;   ///< Set by the kit, deleted here.
    std::uint32_t word = 0;                ///< Used by the kit only.
    std::vector<std::string> strings;      ///< Filled by the kit, released here.
    EGLContext context;                    ///< Current at creation; may be EGL_NO_CONTEXT.
    std::vector<void*> renderers;          ///< The kit must empty it before destruction.
    std::vector<std::uint32_t> textures;   ///< Names in `contextTextures` at creation, each once.
    std::vector<void*> shaders;            ///< The kit must empty it before destruction.
    std::vector<SceneRecord> records;      ///< Filled by the kit, released here.

protected:
    /// Stores the current GL context, adds its entry to gTextureMap and seeds the C library's random generator.
    explicit Scene(IAnimationManager& manager);
};

}  // namespace oru
