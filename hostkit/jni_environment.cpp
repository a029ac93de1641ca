#include "hostkit/jni_environment.h"

#include <algorithm>

namespace hostkit {

namespace {

template <class Element>
std::span<Element> viewOf(std::byte* content, std::size_t bytes) {
    return {reinterpret_cast<Element*>(content), bytes / sizeof(Element)};
}

}  // namespace

/// The JNIEnv that is passed to the library. Its functions find their JniEnvironment through `owner`.
struct JniEnvironment::Environment : JNIEnv {
    JniEnvironment& owner;
    JniTable table{};

    explicit Environment(JniEnvironment& environment) : owner(environment) {
        functions = &table;
        table.GetFloatArrayElements = [](JNIEnv* env, jfloatArray array, jboolean* isCopy) {
            return static_cast<jfloat*>(
                ownerOf(env).pin("GetFloatArrayElements", arrayOf(array), isCopy));
        };
        table.GetShortArrayElements = [](JNIEnv* env, jshortArray array, jboolean* isCopy) {
            return static_cast<jshort*>(
                ownerOf(env).pin("GetShortArrayElements", arrayOf(array), isCopy));
        };
        table.ReleaseFloatArrayElements = [](JNIEnv* env, jfloatArray array, jfloat* data,
                                             jint mode) {
            ownerOf(env).unpin("ReleaseFloatArrayElements", arrayOf(array), data, mode);
        };
        table.ReleaseShortArrayElements = [](JNIEnv* env, jshortArray array, jshort* data,
                                             jint mode) {
            ownerOf(env).unpin("ReleaseShortArrayElements", arrayOf(array), data, mode);
        };
    }

    static JniEnvironment& ownerOf(JNIEnv* env) { return static_cast<Environment&>(*env).owner; }
};

JniEnvironment::Block::Block(std::size_t contentBytes, std::size_t guard)
    : bytes(contentBytes + 2 * guard, guardByte), guardBytes(guard) {
    std::fill_n(content(), contentBytes, std::byte{0});
}

JniEnvironment::JniEnvironment() : JniEnvironment(0) {}

JniEnvironment::JniEnvironment(std::size_t guardLength)
    : environment(std::make_unique<Environment>(*this)), guardElements(guardLength) {}

JniEnvironment::~JniEnvironment() = default;

JNIEnv* JniEnvironment::env() {
    return environment.get();
}

JniTable& JniEnvironment::callTable() {
    return environment->table;
}

JniEnvironment::Array& JniEnvironment::arrayOf(jarray handle) {
    return *reinterpret_cast<Array*>(handle);
}

jarray JniEnvironment::newArray(std::size_t length, std::size_t elementBytes) {
    owned.push_back(std::make_unique<Array>(
        Array{++lastId, elementBytes, {length * elementBytes, guardElements * elementBytes}}));
    return reinterpret_cast<jarray>(owned.back().get());
}

jfloatArray JniEnvironment::newFloatArray(std::size_t length) {
    return static_cast<jfloatArray>(newArray(length, sizeof(jfloat)));
}

jshortArray JniEnvironment::newShortArray(std::size_t length) {
    return static_cast<jshortArray>(newArray(length, sizeof(jshort)));
}

void JniEnvironment::release(jarray array) {
    std::erase_if(owned, [&](const auto& held) { return held.get() == &arrayOf(array); });
}

std::span<float> JniEnvironment::elements(jfloatArray array) {
    Block& block = arrayOf(array).block;
    return viewOf<float>(block.content(), block.contentBytes());
}

std::span<jshort> JniEnvironment::elements(jshortArray array) {
    Block& block = arrayOf(array).block;
    return viewOf<jshort>(block.content(), block.contentBytes());
}

int JniEnvironment::id(jarray array) {
    return arrayOf(array).id;
}

void* JniEnvironment::pin(const char*, Array& array, jboolean* isCopy) {
    if (isCopy != nullptr) {
        *isCopy = JNI_FALSE;
    }
    return array.block.content();
}

void JniEnvironment::unpin(const char*, Array&, void*, jint) {}

}  // namespace hostkit
