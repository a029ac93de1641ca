// A small rendering kit for tests. Like the binary of a real kit, it accesses the scene, the animation manager and the
// animations by offsets of fields and slot numbers of virtual functions. It links only createScene and the shared
// variables by name.

#include <EGL/egl.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <standin_log.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hostkit/gl_context.h"
#include "kit/oru.h"
#include "tests/kit/kit_memory.h"

namespace {

std::string trace;  // calls into the kit, in order
std::optional<timespec> fakeTime;
unsigned lastSeed = 0;

/// Has six slots and no destructor among them, because the library must not destroy an animation.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
struct Animation final {
    virtual void other1() { trace += "other "; }
    virtual void other2() { trace += "other "; }
    virtual void other3() { trace += "other "; }
    virtual void update(float seconds) {
        trace += "update " + std::to_string(seconds) + ' ';
        meanwhile();
    }
    virtual int query() {
        trace += "query" + std::to_string(result) + ' ';
        return result;
    }
    virtual void notify() {
        trace += "notify" + std::to_string(result) + ' ';
        meanwhile();
    }

    explicit Animation(int answer) : result(answer) {}

    int result;
    std::function<void()> meanwhile = [] {};
};

struct OwnedObject {
    OwnedObject() = default;
    OwnedObject(const OwnedObject&) = delete;
    OwnedObject& operator=(const OwnedObject&) = delete;
    virtual ~OwnedObject() { trace += "owned "; }
};

void observeLog(int priority, const char* tag, const char* text) {
    trace += std::to_string(priority) + '/' + tag + '/' + text + ' ';
}

class Kit : public testing::Test {
protected:
    void SetUp() override {
        setLogObserver(observeLog);
        trace.clear();
    }
    void TearDown() override {
        manager->animations.clear();
        callSlot(scene, deletingDestructor);
        setLogObserver(nullptr);
        gTextureMap.clear();
        fakeTime.reset();
        oru::Timer::mIsPaused = 0;
    }

    SceneMemory* scene = makeScene();
    ManagerMemory* manager = static_cast<ManagerMemory*>(scene->animationManager);
};

}  // namespace

// These two functions replace those of the C library in the whole process: the clock can be set by a test, and srand
// only stores its seed. NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
    if (fakeTime && clock == CLOCK_REALTIME) {
        *time = *fakeTime;
        return 0;
    }
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

extern "C" __attribute__((visibility("default"))) void srand(unsigned seed) noexcept {
    lastSeed = seed;
}

TEST_F(Kit, ClockIsTheFloatDistanceToTheStartUnlessPaused) {
    const struct {
        timespec start, current;
        float expected;
    } cases[] = {
        {{10, 700000000}, {12, 200000000}, 1.5f},
        {{10, 200000000}, {12, 700000000}, 2.5f},
        {{12, 0}, {10, 0}, -2.0f},
        {{1, 0}, {16777218, 999999999}, 16777216.0f},          // a sum in double would be 16777218
        {{0, 1}, {0, 4}, 3.0f * 1e-9f},                        // small differences stay exact
        {{7, 0}, {7 + (std::int64_t{1} << 32) + 3, 0}, 3.0f},  // seconds wrap at 32 bits
        {{0, 0}, {std::int64_t{1} << 31, 0}, -2147483648.0f},  // seconds are signed
    };
    for (const auto& [start, current, expected] : cases) {
        oru::Timer::mStartingCnt = start;
        oru::Timer::mCurrentCnt = {};
        fakeTime = current;
        callSlot(manager, updateAll);
        EXPECT_EQ(oru::IAnimationManager::mNow, expected);
        EXPECT_EQ(oru::Timer::mCurrentCnt.tv_sec, current.tv_sec);
        EXPECT_EQ(oru::Timer::mCurrentCnt.tv_nsec, current.tv_nsec);
    }
    // While the timer is paused, mNow is the paused time, and mCurrentCnt keeps its value.
    oru::Timer::mIsPaused = 0x80;
    oru::Timer::mPausedTime = 42.25f;
    oru::Timer::mCurrentCnt = {3, 4};
    callSlot(manager, updateAll);
    EXPECT_EQ(oru::IAnimationManager::mNow, 42.25f);
    EXPECT_EQ(oru::Timer::mCurrentCnt.tv_sec, 3);
    EXPECT_EQ(oru::Timer::mCurrentCnt.tv_nsec, 4);
}

TEST_F(Kit, SharesItsStorageByName) {
    for (const char* name :
         {"gTextureMap", "_ZN3oru5Timer9mIsPausedE", "_ZN3oru5Timer11mPausedTimeE",
          "_ZN3oru5Timer12mStartingCntE", "_ZN3oru5Timer11mCurrentCntE",
          "_ZN3oru17IAnimationManager4mNowE", "_ZN3oru8Drawable11mViewMatrixE",
          "_ZN3oru8Drawable17mProjectionMatrixE", "_ZN3oru8Drawable15mIdentityMatrixE",
          "_ZN3oru11ModelObjectC1Ev"}) {
        EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
    }
}

TEST_F(Kit, AnimationsAreCalledInOrder) {
    EXPECT_EQ(callSlot<int>(manager, queryAll), 0);
    Animation idle(0), busy(-7), last(3);
    manager->animations = {&idle, &busy, &last};
    oru::Timer::mIsPaused = 1;
    oru::Timer::mPausedTime = 1.5f;
    const auto traceOf = [&](std::size_t slot) {
        trace.clear();
        callSlot(manager, slot);
        return trace;
    };
    EXPECT_EQ(callSlot<int>(manager, queryAll), -7);
    EXPECT_EQ(traceOf(queryAll), "query0 query-7 ");
    EXPECT_EQ(traceOf(notifyAll), "notify0 notify-7 notify3 ");
    EXPECT_EQ(traceOf(updateAll), "update 1.500000 update 1.500000 update 1.500000 ");
    busy.meanwhile = [] {
        oru::IAnimationManager::mNow = 9.0f;
    };  // the animations after this one get the new time
    EXPECT_EQ(traceOf(updateAll), "update 1.500000 update 1.500000 update 9.000000 ");
    manager->animations = {&idle};
    manager->animations.shrink_to_fit();
    idle.meanwhile = [&] {
        manager->animations.push_back(&last);
    };  // makes the list reallocate during the loop
    EXPECT_EQ(traceOf(updateAll), "update 1.500000 update 1.500000 ");
}

TEST_F(Kit, ANewSceneIsEmptyAndSlots1To21DoNothing) {
    EXPECT_TRUE(scene->names.empty() && scene->strings.empty() && scene->renderers.empty());
    EXPECT_TRUE(scene->textures.empty() && scene->shaders.empty() && scene->records.empty());
    const auto allZero = [](const auto& values) {
        return std::ranges::all_of(values, [](auto value) { return value == decltype(value){}; });
    };
    EXPECT_TRUE(allZero(scene->size) && allZero(scene->view));
    EXPECT_TRUE(allZero(scene->flags) && allZero(scene->words));
    EXPECT_EQ(scene->ownedObject, nullptr);
    EXPECT_EQ(scene->word, 0U);
    constexpr std::size_t bytes = sizeof(SceneMemory);
    std::array<std::byte, bytes> before{};
    std::memcpy(before.data(), static_cast<void*>(scene), bytes);
    for (std::size_t slot = 1; slot <= 21; ++slot) {
        const bool answers = slot == 7;
        EXPECT_EQ(answers ? callSlot<int>(scene, slot) : (callSlot(scene, slot), 0), 0);
        EXPECT_EQ(std::memcmp(before.data(), static_cast<void*>(scene), bytes), 0) << slot;
    }
    EXPECT_EQ(trace, "");
}

TEST_F(Kit, SceneSeedsTheGeneratorAndRegistersItsContextOnce) {
    EXPECT_NEAR(lastSeed, static_cast<double>(std::time(nullptr)), 60.0);
    EXPECT_EQ(scene->context, EGL_NO_CONTEXT);
    EXPECT_EQ(gTextureMap.size(), 1U);
    EXPECT_EQ(scene->contextTextures, &gTextureMap.at(EGL_NO_CONTEXT));
    const hostkit::GlContext current(4, 4);
    const EGLContext context = eglGetCurrentContext();
    ASSERT_NE(context, EGL_NO_CONTEXT);
    SceneMemory* first = makeScene();
    EXPECT_EQ(first->context, context);
    EXPECT_EQ(gTextureMap.size(), 2U);
    EXPECT_NE(first->contextTextures, scene->contextTextures);
    auto& textures = *first->contextTextures;
    textures = {{"d", 5}, {"b", 9}, {"a", 7}, {"c", 7}, {"e", 9}};
    SceneMemory* second = makeScene();
    EXPECT_EQ(gTextureMap.size(), 2U);
    EXPECT_EQ(second->contextTextures, first->contextTextures);
    EXPECT_EQ(second->textures, (std::vector<std::uint32_t>{7, 9, 5}));
    EXPECT_TRUE(first->textures.empty());
    callSlot(first, deletingDestructor);
    callSlot(second, deletingDestructor);
    EXPECT_EQ(gTextureMap.at(context).size(), 5U);
}

namespace {

void expectCamera(SceneMemory* scene, std::size_t slot, const std::array<float, 16>& projection) {
    std::fill_n(oru::Drawable::mViewMatrix, 16, 77.0f);
    std::fill_n(oru::Drawable::mProjectionMatrix, 16, 77.0f);
    oru::Drawable::mIdentityMatrix[9] = 0.25f;  // the library must copy the kit's identity matrix
    callSlot(scene, slot);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(oru::Drawable::mViewMatrix[i], oru::Drawable::mIdentityMatrix[i]) << i;
        EXPECT_FLOAT_EQ(oru::Drawable::mProjectionMatrix[i], projection[i]) << i;
    }
    oru::Drawable::mIdentityMatrix[9] = 0.0f;
}

}  // namespace

TEST_F(Kit, OrthographicCameraMapsTheViewToTheUnitSquare) {
    std::fill_n(scene->view, 18, 99.0f);
    for (const auto& [w, h] : {std::pair{1080, 1920}, {2560, 1440}, {1, 3}}) {
        scene->size[0] = w;
        scene->size[1] = h;
        const auto x = static_cast<float>(w), y = static_cast<float>(h);
        expectCamera(scene, orthographic,
                     {2 / x, 0, 0, 0, 0, 2 / y, 0, 0, 0, 0, -0.001f, 0, -1, -1, 0, 1});
    }
}

TEST_F(Kit, PerspectiveCameraHasItsFieldOfViewAndPlanes) {
    std::fill_n(scene->view, 18, 99.0f);
    scene->size[0] = 3;
    for (const float aspect : {0.5625f, 1.0f, 16.0f / 9.0f}) {
        scene->view[4] = aspect;
        expectCamera(scene, perspective,
                     {1.792591f / aspect, 0, 0, 0, 0, 1.792591f, 0, 0, 0, 0, -1.0002f, -1, 0, 0,
                      -2.0002f, 0});
    }
}

// The scene's lists allocate memory, so a leak checker reports a list that the scene does not release.
TEST_F(Kit, DestructionDeletesNotifiesAndWarnsInThisOrder) {
    const std::string renderer = "6/nuv.oru/WARNING: Renderer leaked!!!!!!! ";
    const std::string shader = "6/nuv.oru/WARNING: Shader leaked!!!!!!! ";
    const std::string longName(100, 'n');
    const struct {
        std::size_t renderers, shaders;
        std::string warnings;
    } cases[] = {{0, 0, ""}, {2, 0, renderer}, {0, 1, shader}, {1, 3, renderer + shader}};
    Animation animation(5);
    manager->animations = {&animation};
    for (const auto& [renderers, shaders, warnings] : cases) {
        for (const bool freedByKit : {false, true}) {
            SceneMemory* leaving = makeScene();
            leaving->ownedObject = new OwnedObject;
            leaving->renderers.resize(renderers);
            leaving->shaders.resize(shaders);
            leaving->textures = {1, 2};
            leaving->names = {longName};
            leaving->strings = {longName, longName};
            leaving->records.resize(4);
            animation.meanwhile = [leaving] { trace += leaving->ownedObject ? "dangling " : ""; };
            trace.clear();
            callSlot(leaving, freedByKit ? completeDestructor : deletingDestructor);
            EXPECT_EQ(trace, "owned notify5 " + warnings);
            if (freedByKit) {
                ::operator delete(leaving);
            }
        }
    }
}
