#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "hostkit/jni_environment.h"

namespace hostkit {

/// Kind of pointer that a Get...ArrayElements call returns: a pointer to the array itself or to a copy. A JVM can
/// return either kind.
enum class ArrayAccess { direct, copy };

struct JniOptions {
    ArrayAccess access = ArrayAccess::direct;
    /// Number of guard elements before and after each array and each copy. 0 means no guard elements.
    std::size_t guardElements = 0;
};

/// A call of a JNI array function.
struct JniCall {
    std::string name;
    /// Id of the array.
    int array;
    /// Mode of a Release call; 0 for a Get call.
    jint mode;
    bool operator==(const JniCall&) const = default;
};

/// An overwritten guard element.
struct GuardDamage {
    /// Id of the array.
    int array;
    /// Index of the damaged guard element, relative to the start of the array. It is negative before the array, and at
    /// least the array's length after the array.
    std::ptrdiff_t element;
    bool operator==(const GuardDamage&) const = default;
};

/// A JNIEnv that checks the library. It can return copies, detect writes outside an array, fail to pin an array, and
/// log the array calls. If the library calls any other JNI function, the program aborts with a message that names the
/// function.
class CheckedJni : public JniEnvironment {
public:
    explicit CheckedJni(JniOptions options = {});

    /// Sets the kind of pointer that later Get calls return. Pointers that were returned before do not change.
    void setAccess(ArrayAccess chosen) { access = chosen; }
    /// Makes Get calls for this array return null, as a JVM does if memory runs out. If `array` is null, no call fails.
    void refuse(jarray array);

    /// Turns the log on or off. If the log is off, this class allocates no memory during a frame.
    void setLogging(bool on) { logging = on; }
    /// Returns the logged calls since the start or the last `clearCalls`, in order.
    const std::vector<JniCall>& calls() const { return log; }
    void clearCalls() { log.clear(); }

    /// Returns the number of Get calls without a matching Release call so far.
    int pinned() const { return pins; }

    /// Returns the guard damage that releases and `checkGuards` have found so far. Each damage is reported once,
    /// because the check then repairs the guard element.
    const std::vector<GuardDamage>& damages() const { return found; }
    /// Checks the guards of every array and copy. Returns `damages`.
    const std::vector<GuardDamage>& checkGuards();

private:
    /// Pointers that Get calls have returned for one array and that are not released yet: the number of direct
    /// pointers, and all copies.
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
    /// Pointers that are not released yet. The key is the id of their array.
    std::map<int, Pins> held;
    /// Id of the array for which Get calls return null. 0 if no call fails.
    int refused = 0;
    int pins = 0;
};

}  // namespace hostkit
