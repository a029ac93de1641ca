#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// Kind of pointer that a Get...ArrayElements call returns: to the array itself or to a copy. A JVM may return either.
enum class ArrayAccess { direct, copy };

struct JniOptions {
    ArrayAccess access = ArrayAccess::direct;
    /// Number of guard elements before and after each array and each copy. At 0 there are no guards.
    std::size_t guardElements = 0;
};

/// A call of a JNI array function.
struct JniCall {
    std::string name;
    /// Id of the array.
    int array;
    /// Release mode; 0 for a Get call.
    jint mode;
    bool operator==(const JniCall&) const = default;
};

/// An overwritten guard element.
struct GuardDamage {
    /// Id of the array.
    int array;
    /// Index relative to the start of the array. Negative before the array; at least its length after the array.
    std::ptrdiff_t element;
    bool operator==(const GuardDamage&) const = default;
};

/// A JNIEnv that checks the library. It can return copies, detect writes outside an array, fail to pin an array, and
/// log the array calls. A call of any other JNI function aborts the program with a message that names the function.
class CheckedJni : public JniEnvironment {
public:
    explicit CheckedJni(JniOptions options = {});

    /// Sets the kind of pointer that later Get calls return. Arrays that are already pinned do not change.
    void setAccess(ArrayAccess chosen) { access = chosen; }
    /// Makes Get calls for this array return null, as a JVM does if memory runs out. Null means that no array fails.
    void refuse(jarray array);

    /// Turns the log on or off. While the log is off, a frame allocates no memory in this class.
    void setLogging(bool on) { logging = on; }
    /// Returns the logged calls since the start or the last `clearCalls`, in order.
    const std::vector<JniCall>& calls() const { return log; }
    void clearCalls() { log.clear(); }

    /// Returns the number of pins that are not released yet.
    int pinned() const { return pins; }

    /// Returns the damage found so far by releases and by `checkGuards`. Each damage is reported once, because the
    /// guard element is then repaired.
    const std::vector<GuardDamage>& damages() const { return found; }
    /// Checks the guards of every array and copy. Returns `damages`.
    const std::vector<GuardDamage>& checkGuards();

private:
    /// Pins of one array that are still held.
    struct Pins {
        int direct = 0;
        std::vector<Block> copies;
    };

    void* pin(const char* call, Array& array, jboolean* isCopy) override;
    void unpin(const char* call, Array& array, void* data, jint mode) override;
    void note(const char* call, const Array& array, jint mode);
    void checkBlock(const Array& array, Block& block);

    ArrayAccess access;
    bool logging = false;
    std::vector<JniCall> log;
    std::vector<GuardDamage> found;
    /// Held pins, by the id of their array.
    std::map<int, Pins> held;
    /// Id of the array for which Get calls return null, or 0 if there is none.
    int refused = 0;
    int pins = 0;
};

}  // namespace hostkit
