#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace hostkit {

/// Table of the JNI calls. A JDK and Android give its type different names.
using JniTable = std::remove_cvref_t<decltype(*JNIEnv::functions)>;

/// A JNIEnv for a host without a JVM. It offers the four array calls that the library makes, on arrays of its own, and
/// no other call. One thread at a time.
class JniEnvironment {
public:
    JniEnvironment();
    virtual ~JniEnvironment();
    JniEnvironment(const JniEnvironment&) = delete;
    JniEnvironment& operator=(const JniEnvironment&) = delete;

    JNIEnv* env();

    /// A zeroed array; it lives as long as the environment, or until released. Ids count from 1,
    /// both types together.
    jfloatArray newFloatArray(std::size_t length);
    jshortArray newShortArray(std::size_t length);
    /// The array must not be pinned.
    void release(jarray array);

    /// The array as the host sees it, valid for the life of the environment.
    static std::span<float> elements(jfloatArray array);
    static std::span<jshort> elements(jshortArray array);
    static int id(jarray array);

protected:
    /// Zeroed content between two guard zones.
    struct Block {
        Block(std::size_t contentBytes, std::size_t guardBytes);
        std::byte* content() { return bytes.data() + guardBytes; }
        std::size_t contentBytes() const { return bytes.size() - 2 * guardBytes; }

        std::vector<std::byte> bytes;
        std::size_t guardBytes;
    };
    static constexpr std::byte guardByte{0xA5};

    /// The target of an array handle.
    struct Array {
        int id;
        std::size_t elementBytes;
        Block block;
    };

    /// Makes arrays with guard zones of so many elements.
    explicit JniEnvironment(std::size_t guardLength);
    static Array& arrayOf(jarray handle);
    std::span<const std::unique_ptr<Array>> arrays() const { return owned; }
    JniTable& callTable();

    /// Carries out a Get...ArrayElements call of that JNI name. Hands out the array itself.
    virtual void* pin(const char* call, Array& array, jboolean* isCopy);
    /// Carries out a Release...ArrayElements call.
    virtual void unpin(const char* call, Array& array, void* data, jint mode);

private:
    struct Environment;

    jarray newArray(std::size_t length, std::size_t elementBytes);

    std::unique_ptr<Environment> environment;
    std::vector<std::unique_ptr<Array>> owned;
    std::size_t guardElements;
    int lastId = 0;
};

}  // namespace hostkit
