#pragma once

#include <jni.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace hostkit {

/// What a Get...ArrayElements call hands out: the array itself or a copy; a JVM may do either.
enum class ArrayAccess { direct, copy };

struct JniOptions {
    ArrayAccess access = ArrayAccess::direct;
    /// Guard elements before and after each array and each copy; 0 for none.
    std::size_t guardElements = 0;
};

/// One array call: its JNI name, the array's id and the release mode, which is 0 for the Get calls.
struct JniCall {
    std::string name;
    int array;
    jint mode;
    bool operator==(const JniCall&) const = default;
};

/// An overwritten guard element. `element` counts from the start of the array: below 0 before it,
/// its length and more past its end.
struct GuardDamage {
    int array;
    std::ptrdiff_t element;
    bool operator==(const GuardDamage&) const = default;
};

/// A JNIEnv for a host without a JVM. The four array calls that the library makes work on arrays of
/// this environment; any other call ends the program with a line that names it. One thread at a time.
class JniEnvironment {
public:
    explicit JniEnvironment(JniOptions options = {});
    ~JniEnvironment();
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

    /// Applies to the arrays pinned from now on.
    void setAccess(ArrayAccess access);
    /// The Get calls for this array return null, as those of a JVM without memory do; null: for none.
    void refuse(jarray array);

    /// Array calls since the start or the last clear, in order; kept only while logging is on, so
    /// that a frame without logging allocates nothing here.
    void setLogging(bool on);
    const std::vector<JniCall>& calls() const;
    void clearCalls();

    /// Arrays pinned now and not released yet, each pin counted.
    int pinned() const;

    /// Damage found at releases and by the checks so far, in the order found; a damaged guard is
    /// repaired once reported. `checkGuards` looks at every array now.
    const std::vector<GuardDamage>& damages() const;
    const std::vector<GuardDamage>& checkGuards();

private:
    struct State;
    std::unique_ptr<State> state;
};

}  // namespace hostkit
