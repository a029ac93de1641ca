#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace hostkit {

/// Type of the table of JNI functions. JDK and Android headers name this type differently.
using JniTable = std::remove_cvref_t<decltype(*JNIEnv::functions)>;

/// A JNIEnv for a host that has no JVM, and the Java arrays that the host passes to the library. It supports only the
/// four array functions that the library calls. Use it on one thread at a time.
class JniEnvironment {
public:
    /// Creates an environment without arrays.
    JniEnvironment();
    /// Destroys the arrays.
    virtual ~JniEnvironment();
    JniEnvironment(const JniEnvironment&) = delete;
    JniEnvironment& operator=(const JniEnvironment&) = delete;

    /// Returns the JNIEnv to pass to native methods.
    /// @return the JNIEnv; valid as long as this object
    JNIEnv* env();

    /// Creates an array of zeros.
    /// @param length number of elements
    /// @return the array; valid until `release` or the end of the environment
    jfloatArray newFloatArray(std::size_t length);
    /// Creates an array of zeros.
    /// @param length number of elements
    /// @return the array; valid until `release` or the end of the environment
    jshortArray newShortArray(std::size_t length);
    /// Destroys an array. The array must not be pinned by a Get...ArrayElements call.
    /// @param array array of this environment
    void release(jarray array);

    /// Returns the elements of an array. The host can read and write them.
    /// @param array array of any environment
    /// @return the elements; valid as long as the array
    static std::span<float> elements(jfloatArray array);
    /// Returns the elements of an array. The host can read and write them.
    /// @param array array of any environment
    /// @return the elements; valid as long as the array
    static std::span<jshort> elements(jshortArray array);
    /// Returns the id of an array.
    /// @param array array of any environment
    /// @return number of the array in its environment, in order of creation, from 1; arrays of both types share one
    ///     count
    static int id(jarray array);

protected:
    /// A block of memory between two guard zones. Initially, all bytes of the memory are 0.
    struct Block {
        /// Creates a block.
        /// @param contentBytes size of the content in bytes
        /// @param guardBytes size of each guard zone in bytes
        Block(std::size_t contentBytes, std::size_t guardBytes);
        /// Returns the start of the content.
        /// @return pointer to the first byte of the content
        std::byte* content() { return bytes.data() + guardBytes; }
        /// Returns the size of the content.
        /// @return size in bytes
        std::size_t contentBytes() const { return bytes.size() - 2 * guardBytes; }

        /// Guard zone, content, guard zone.
        std::vector<std::byte> bytes;
        /// Size of each guard zone in bytes.
        std::size_t guardBytes;
    };
    /// Value of each byte in an undamaged guard zone.
    static constexpr std::byte guardByte{0xA5};

    /// The object to which an array handle, such as a jfloatArray, points.
    struct Array {
        /// Number of the array, from 1.
        int id;
        /// Size of an element in bytes.
        std::size_t elementBytes;
        /// Content and guard zones.
        Block block;
    };

    /// Creates an environment whose arrays have guard zones.
    /// @param guardLength length of each guard zone in elements
    explicit JniEnvironment(std::size_t guardLength);
    /// Returns the object to which an array handle points.
    /// @param handle array of any environment
    /// @return the object
    static Array& arrayOf(jarray handle);
    /// Returns all arrays of this environment.
    /// @return the arrays in order of creation
    std::span<const std::unique_ptr<Array>> arrays() const { return owned; }
    /// Returns the table of JNI functions, which the caller can change.
    /// @return the table that `env` uses
    JniTable& callTable();

    /// Handles a Get...ArrayElements call. This implementation returns the array itself.
    /// @param call JNI name of the function
    /// @param array array to pin
    /// @param isCopy output, may be null: whether the result is a copy
    /// @return the elements, or null on failure
    virtual void* pin(const char* call, Array& array, jboolean* isCopy);
    /// Handles a Release...ArrayElements call. This implementation does nothing.
    /// @param call JNI name of the function
    /// @param array pinned array
    /// @param data result of `pin`
    /// @param mode 0, JNI_COMMIT or JNI_ABORT
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
