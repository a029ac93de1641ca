#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "hostkit/jni_environment.h"

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

/// A JNIEnv that checks its user: it may hand out copies, finds writes beyond an array, refuses arrays and keeps a log
/// of the array calls. A call that the host does not offer ends the program with a line that names the call.
class CheckedJni : public JniEnvironment {
public:
    explicit CheckedJni(JniOptions options = {});

    /// Applies to the arrays pinned from now on.
    void setAccess(ArrayAccess chosen) { access = chosen; }
    /// Makes the Get calls for this array return null, as those of a JVM without memory do. Null: for no array.
    void refuse(jarray array);

    /// Array calls since the start or the last clear, in order; kept only while logging is on, so
    /// that a frame without logging allocates nothing here.
    void setLogging(bool on) { logging = on; }
    const std::vector<JniCall>& calls() const { return log; }
    void clearCalls() { log.clear(); }

    /// Arrays pinned now and not released yet, each pin counted.
    int pinned() const { return pins; }

    /// Damage found at releases and by the checks so far, in the order found; a damaged guard is
    /// repaired once reported. `checkGuards` looks at every array now.
    const std::vector<GuardDamage>& damages() const { return found; }
    const std::vector<GuardDamage>& checkGuards();

private:
    /// The pins of one array that wait for their release.
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
    /// By the id of their array.
    std::map<int, Pins> held;
    /// The id of the refused array; 0: none.
    int refused = 0;
    int pins = 0;
};

}  // namespace hostkit
