#include "hostkit/jni_environment.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

#include "hostkit/jni_call_names.h"

namespace hostkit {

namespace {

constexpr std::byte guardByte{0xA5};

/// Guard bytes, then the elements, then guard bytes.
struct GuardedBlock {
    std::vector<std::byte> bytes;
    std::size_t guardBytes;

    GuardedBlock(std::size_t contentBytes, std::size_t guard)
        : bytes(contentBytes + 2 * guard, guardByte), guardBytes(guard) {
        std::fill_n(content(), contentBytes, std::byte{0});
    }
    std::byte* content() { return bytes.data() + guardBytes; }
    std::size_t contentBytes() const { return bytes.size() - 2 * guardBytes; }
};

/// What an array handle points to.
struct Array {
    int id;
    std::size_t elementBytes;
    GuardedBlock block;
    std::vector<GuardedBlock> copies;
    int directPins = 0;
};

Array& arrayOf(jarray handle) {
    return *reinterpret_cast<Array*>(handle);
}

template <class Element>
std::span<Element> elementsOf(jarray handle) {
    GuardedBlock& block = arrayOf(handle).block;
    return {reinterpret_cast<Element*>(block.content()), block.contentBytes() / sizeof(Element)};
}

[[noreturn]] void endProgram(const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
    std::abort();
}

[[noreturn]] void endProgramFor(const char* call) {
    endProgram("JNI call not offered by this host: " + std::string(call));
}

template <class Name, class Result, class... Arguments>
struct Refusal {
    static Result call(Arguments...) { endProgramFor(Name{}()); }
    static Result callVariadic(Arguments..., ...) { endProgramFor(Name{}()); }
};

template <class Name, class Result, class... Arguments>
void refuseCalls(Result (*&slot)(Arguments...), Name) {
    slot = Refusal<Name, Result, Arguments...>::call;
}

template <class Name, class Result, class... Arguments>
void refuseCalls(Result (*&slot)(Arguments..., ...), Name) {
    slot = Refusal<Name, Result, Arguments...>::callVariadic;
}

// A JDK and Android name the table differently.
using JniTable = std::remove_cvref_t<decltype(*JNIEnv::functions)>;

/// Refuses JNI 9's call, which Android's jni.h lacks.
template <class Table>
void refuseGetModule(Table& table) {
    if constexpr (requires { table.GetModule; }) {
        refuseCalls(table.GetModule, [] { return "GetModule"; });
    }
}

}  // namespace

struct JniEnvironment::State : JNIEnv {
    JniOptions options;
    JniTable table{};
    std::vector<std::unique_ptr<Array>> arrays;
    bool logging = false;
    std::vector<JniCall> calls;
    std::vector<GuardDamage> damages;
    const Array* refused = nullptr;
    int pinned = 0;
    int lastId = 0;

    explicit State(JniOptions chosen) : options(chosen) {
        functions = &table;
#define HOSTKIT_REFUSE(call) refuseCalls(table.call, [] { return #call; });
        HOSTKIT_OTHER_JNI_CALLS(HOSTKIT_REFUSE)
#undef HOSTKIT_REFUSE
        refuseGetModule(table);
        table.GetFloatArrayElements = [](JNIEnv* env, jfloatArray array, jboolean* isCopy) {
            return static_cast<jfloat*>(of(env).get("GetFloatArrayElements", array, isCopy));
        };
        table.GetShortArrayElements = [](JNIEnv* env, jshortArray array, jboolean* isCopy) {
            return static_cast<jshort*>(of(env).get("GetShortArrayElements", array, isCopy));
        };
        table.ReleaseFloatArrayElements = [](JNIEnv* env, jfloatArray array, jfloat* data,
                                             jint mode) {
            of(env).release("ReleaseFloatArrayElements", array, data, mode);
        };
        table.ReleaseShortArrayElements = [](JNIEnv* env, jshortArray array, jshort* data,
                                             jint mode) {
            of(env).release("ReleaseShortArrayElements", array, data, mode);
        };
    }

    static State& of(JNIEnv* env) {
        return static_cast<State&>(*env);
    }

    jarray makeArray(std::size_t length, std::size_t elementBytes) {
        arrays.push_back(std::make_unique<Array>(
            Array{++lastId,
                  elementBytes,
                  {length * elementBytes, options.guardElements * elementBytes},
                  {}}));
        return reinterpret_cast<jarray>(arrays.back().get());
    }

    void log(const char* call, const Array& array, jint mode) {
        if (logging) {
            calls.push_back({call, array.id, mode});
        }
    }

    void* get(const char* call, jarray handle, jboolean* isCopy) {
        Array& array = arrayOf(handle);
        log(call, array, 0);
        if (&array == refused) {
            return nullptr;
        }
        ++pinned;
        if (isCopy) {
            *isCopy = options.access == ArrayAccess::copy;
        }
        if (options.access == ArrayAccess::direct) {
            ++array.directPins;
            return array.block.content();
        }
        array.copies.push_back(array.block);
        return array.copies.back().content();
    }

    void release(const char* call, jarray handle, void* data, jint mode) {
        Array& array = arrayOf(handle);
        log(call, array, mode);
        checkBlock(array, array.block);
        if (data == array.block.content() && array.directPins > 0) {
            if (mode != JNI_COMMIT) {
                --array.directPins;
                --pinned;
            }
            return;
        }
        const auto copy = std::find_if(array.copies.begin(), array.copies.end(),
                                       [&](GuardedBlock& held) { return held.content() == data; });
        if (copy == array.copies.end()) {
            endProgram(std::string(call) + ": array " + std::to_string(array.id) +
                       " did not hand out this pointer");
        }
        checkBlock(array, *copy);
        if (mode != JNI_ABORT) {
            std::copy_n(copy->content(), copy->contentBytes(), array.block.content());
        }
        if (mode != JNI_COMMIT) {
            array.copies.erase(copy);
            --pinned;
        }
    }

    void checkBlock(const Array& array, GuardedBlock& block) {
        const auto elementBytes = static_cast<std::ptrdiff_t>(array.elementBytes);
        const auto guard = static_cast<std::ptrdiff_t>(block.guardBytes);
        const auto content = static_cast<std::ptrdiff_t>(block.contentBytes());
        const auto checkZone = [&](std::ptrdiff_t firstByte) {
            for (std::ptrdiff_t at = firstByte; at < firstByte + guard; at += elementBytes) {
                const auto element = block.content() + at;
                if (std::any_of(element, element + elementBytes,
                                [](std::byte value) { return value != guardByte; })) {
                    damages.push_back({array.id, at / elementBytes});
                    std::fill_n(element, elementBytes, guardByte);
                }
            }
        };
        checkZone(-guard);
        checkZone(content);
    }
};

JniEnvironment::JniEnvironment(JniOptions options) : state(std::make_unique<State>(options)) {}

JniEnvironment::~JniEnvironment() = default;

JNIEnv* JniEnvironment::env() {
    return state.get();
}

jfloatArray JniEnvironment::newFloatArray(std::size_t length) {
    return static_cast<jfloatArray>(state->makeArray(length, sizeof(jfloat)));
}

jshortArray JniEnvironment::newShortArray(std::size_t length) {
    return static_cast<jshortArray>(state->makeArray(length, sizeof(jshort)));
}

void JniEnvironment::release(jarray array) {
    if (state->refused == &arrayOf(array)) {
        state->refused = nullptr;
    }
    std::erase_if(state->arrays, [&](const auto& held) { return held.get() == &arrayOf(array); });
}

std::span<float> JniEnvironment::elements(jfloatArray array) {
    return elementsOf<float>(array);
}

std::span<jshort> JniEnvironment::elements(jshortArray array) {
    return elementsOf<jshort>(array);
}

int JniEnvironment::id(jarray array) {
    return arrayOf(array).id;
}

void JniEnvironment::setAccess(ArrayAccess access) {
    state->options.access = access;
}

void JniEnvironment::refuse(jarray array) {
    state->refused = reinterpret_cast<Array*>(array);
}

void JniEnvironment::setLogging(bool on) {
    state->logging = on;
}

const std::vector<JniCall>& JniEnvironment::calls() const {
    return state->calls;
}

void JniEnvironment::clearCalls() {
    state->calls.clear();
}

int JniEnvironment::pinned() const {
    return state->pinned;
}

const std::vector<GuardDamage>& JniEnvironment::damages() const {
    return state->damages;
}

const std::vector<GuardDamage>& JniEnvironment::checkGuards() {
    for (const auto& array : state->arrays) {
        state->checkBlock(*array, array->block);
        for (GuardedBlock& copy : array->copies) {
            state->checkBlock(*array, copy);
        }
    }
    return state->damages;
}

}  // namespace hostkit
