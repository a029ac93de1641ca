#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// Result of a Get...ArrayElements call: the array itself or a copy. A JVM may return either.
enum class ArrayAccess { direct, copy };

struct JniOptions {
    ArrayAccess access = ArrayAccess::direct;
    /// Number of guard elements before and after each array and each copy; 0 for none.
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
    /// Index relative to the start of the array: negative before it, at least its length after it.
    std::ptrdiff_t element;
    bool operator==(const GuardDamage&) const = default;
};

/// A JNIEnv that checks the library. It can return copies, detect writes outside an array, fail to pin an array, and
/// log the array calls. A call of any other JNI function aborts the program with a message that names the function.
class CheckedJni : public JniEnvironment {
public:
    explicit CheckedJni(JniOptions options = {});

    /// Sets the result of later Get calls. Arrays that are already pinned do not change.
    void setAccess(ArrayAccess chosen) { access = chosen; }
    /// Makes the Get calls for this array return null, as a JVM without memory does. Null: no array fails.
    void refuse(jarray array);

    /// Turns the log on or off. A frame without logging allocates no memory here.
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
    /// Pins of one array that are not released yet.
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
    /// Pins by the id of their array.
    std::map<int, Pins> held;
    /// Id of the array that cannot be pinned; 0: none.
    int refused = 0;
    int pins = 0;
};

}  // namespace hostkit
