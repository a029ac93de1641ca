#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>

#include "host/native_for_velmora.h"
#include "hostkit/gl_context.h"
#include "hostkit/jni_environment.h"

// The library is opened and closed at run time, as a JVM does it; nothing of this program links it.

namespace {

/// A native method of the library, by the name that the Java class gives it.
template <class Method>
Method* method(void* library, const char* name) {
    const std::string symbol =
        std::string("Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_") + name;
    void* const found = dlsym(library, symbol.c_str());
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Method*>(found);
}
#define METHOD(library, name)                                                                     \
    method<decltype(Java_com_corvane_android_visualeffect_lock_velmora_NativeForVelmora_##name)>( \
        library, #name)

bool isLoaded() {
    return dlopen(VELMORA_LIBRARY, RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

struct Frame {
    hostkit::JniEnvironment jni;
    jfloatArray floats = jni.newFloatArray(16);
    jshortArray indices = jni.newShortArray(3);

    void draw(void* library) {
        METHOD(library, onDrawFrame)
        (jni.env(), nullptr, floats, floats, indices, 9, 9, 3, floats, 1, 1, 2, 2, 1.3f, 1, 1, 1, 1,
         0, 0, 1, 1, 1, false);
    }
};

TEST(Unload, WaitsForTheWorkerAndFreesAll) {
    Frame frame;
    JNIEnv* const env = frame.jni.env();
    for (int time = 0; time < 50; ++time) {
        ASSERT_FALSE(isLoaded());
        const hostkit::GlContext context(16, 16);
        void* const library = dlopen(VELMORA_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        METHOD(library, onInitSetting)(env, nullptr, 1080, 1920, true);
        if (time > 0) {  // the first time, settings are all there is to give up
            METHOD(library, onInitUVHBuffer)(env, nullptr);
            METHOD(library, onInitGPU)(env, nullptr);
            METHOD(library, onTouch)(env, nullptr, 500, 900, 0, 1.0f);
            frame.draw(library);
        }
        EXPECT_EQ(METHOD(library, getClearInkValue)(env, nullptr), 1);
        dlclose(library);  // while the worker runs
    }
    EXPECT_FALSE(isLoaded());
}

}  // namespace
