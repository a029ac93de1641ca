#pragma once

#include <EGL/egl.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <map>
#include <set>
#include <string>
#include <vector>

// The rendering kit libpeluxNuvCommon, as far as this library meets it. Three things bind both
// sides and must not move: imported names, the order of virtual operations, the order of fields.
// All of it belongs to the kit's render thread; nothing is locked.

// Imported from the kit's library, hence visible whatever the compiler's default.
#pragma GCC visibility push(default)

namespace oru {

/// The kit's timer. `mIsPaused` is a byte and no bool, because any value but 0 means paused; the
/// counts are the platform's own time value, because the clock fills one in place.
struct Timer {
    static std::uint8_t mIsPaused;
    static float mPausedTime;      ///< Seconds, reported while paused.
    static timespec mStartingCnt;  ///< Set by the kit.
    static timespec mCurrentCnt;   ///< Set by the animation manager while not paused.
};

/// The clock and the animations as the kit drives them, by slot. Never destroyed through this interface.
class IAnimationManager {
public:
    static float mNow;  ///< Animation time in seconds, set by `update`.

    virtual int anyAnimationResult() = 0;
    virtual void notifyAnimations() = 0;
    virtual void update() = 0;

protected:
    ~IAnimationManager() = default;
};

/// Matrices of 16 floats, column-major, that the kit draws with.
struct Drawable {
    static float mViewMatrix[16];
    static float mProjectionMatrix[16];
    static float mIdentityMatrix[16];
};

/// The kit builds it, whoever holds it releases its storage: what it holds is one growable array
/// here, so that the destructor needs nothing from the kit.
class ModelObject {
public:
    ModelObject();

private:
    std::vector<float> mVertices;
};

/// Texture names of one GL context. The kit names a texture by its file; here only the order of the
/// keys matters.
using ContextTextures = std::map<std::string, std::uint32_t>;

}  // namespace oru

/// One entry per GL context; entries are added here, and removed by the kit alone. The C linkage
/// keeps the symbol plain: for the string in its type, some compilers would tag a C++ name.
extern "C" std::map<EGLContext, oru::ContextTextures> gTextureMap;

#pragma GCC visibility pop

namespace oru {

/// An animation of the kit. Never destroyed through this interface.
class IAnimation {
public:
    virtual void reserved1() = 0;  ///< Three operations of the kit's own, never called here.
    virtual void reserved2() = 0;
    virtual void reserved3() = 0;
    virtual void update(float seconds) = 0;
    virtual int query() = 0;
    virtual void notify() = 0;

protected:
    ~IAnimation() = default;
};

/// An object of the kit that is deleted through its second slot, as a virtual destructor in first
/// place gives it.
class IOwnedObject {
public:
    virtual ~IOwnedObject() = default;
};

/// What the kit knows about its view; only the aspect ratio, width over height, is read here.
struct ViewParameters {
    std::array<float, 4> leading{};
    float aspectRatio = 0.0f;
    std::array<float, 13> trailing{};
};

/// Nine words per record, filled and read by the kit alone.
using SceneRecord = std::array<std::uint32_t, 9>;

/// Base of every scene. The kit ships it as source, for its table and its fields must be laid out
/// by the compiler of the library that derives from it; its operations are in oru.cpp. The kit
/// reads and writes the fields in place and calls the operations by slot.
class Scene {
public:
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // Slots 1 to 21. The kit's own meaning of them is not needed: they do nothing, whatever they
    // are passed. The seventh gives an int, so that a caller reads 0 or false as it expects.
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

    /// Slots 22 and 23. Logs a warning for each list of renderers or shaders that is not empty.
    virtual ~Scene();

    /// Slot 24. Maps x in [0, width] and y in [0, height] to [-1, 1].
    virtual void setOrthographicCamera();

    /// Slot 25. Vertical field of view 58.31 degrees, near plane 1, far plane 10000.
    virtual void setPerspectiveCamera();

    ContextTextures* contextTextures = nullptr;  ///< The entry of `context` in gTextureMap.
    std::set<std::string> names;                 ///< Filled by the kit, released here.
    std::int32_t width = 0;                      ///< Size of the view, set by the kit.
    std::int32_t height = 0;
    ViewParameters view;                   ///< Set by the kit.
    std::array<bool, 4> flags{};           ///< The kit's, not used here.
    std::array<std::uint32_t, 2> words{};  ///< The kit's, not used here.
    IAnimationManager* animationManager;   ///< Not owned; notified at destruction.
    ModelObject model;                     ///< Built by the kit, released here.
    IOwnedObject* ownedObject = nullptr;   ///< Set by the kit, deleted here.
    std::uint32_t word = 0;                ///< The kit's, not used here.
    std::vector<std::string> strings;      ///< Filled by the kit, released here.
    EGLContext context;                    ///< Current at creation; EGL_NO_CONTEXT is a key too.
    std::vector<void*> renderers;          ///< Emptied by the kit first, or they leak.
    std::vector<std::uint32_t> textures;   ///< Names of `contextTextures` at creation, each once.
    std::vector<void*> shaders;            ///< Emptied by the kit first, or they leak.
    std::vector<SceneRecord> records;      ///< Filled by the kit, released here.

protected:
    /// Registers the current GL context in gTextureMap and seeds the C library's random generator.
    explicit Scene(IAnimationManager& manager);
};

}  // namespace oru
