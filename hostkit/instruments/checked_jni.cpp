#include "hostkit/instruments/checked_jni.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "hostkit/instruments/jni_call_names.h"

namespace hostkit {

namespace {

/// Prints the message to standard error and aborts.
[[noreturn]] void endProgram(const std::string& message) {
    std::fprintf(stderr, "%s\n", message.c_str());
    std::abort();
}

[[noreturn]] void rejectCall(const char* call) {
    endProgram("the library called a JNI function that it must not use: " + std::string(call));
}

/// Replacements of JNI functions that the library must not call. Each prints the name of the JNI function and aborts
/// the program.
template <class Name, class Result, class... Arguments>
struct Refusal {
    static Result call(Arguments...) { rejectCall(Name{}()); }
    static Result callVariadic(Arguments..., ...) { rejectCall(Name{}()); }
};

template <class Name, class Result, class... Arguments>
void refuseCalls(Result (*&slot)(Arguments...), Name) {
    slot = Refusal<Name, Result, Arguments...>::call;
}

template <class Name, class Result, class... Arguments>
void refuseCalls(Result (*&slot)(Arguments..., ...), Name) {
    slot = Refusal<Name, Result, Arguments...>::callVariadic;
}

/// Makes GetModule abort the program. JNI 9 added the function, and Android's jni.h does not declare it.
template <class Table>
void refuseGetModule(Table& table) {
    if constexpr (requires { table.GetModule; }) {
        refuseCalls(table.GetModule, [] { return "GetModule"; });
    }
}

}  // namespace

CheckedJni::CheckedJni(JniOptions options)
    : JniEnvironment(options.guardElements), access(options.access) {
    JniTable& table = callTable();
#define HOSTKIT_REFUSE(call) refuseCalls(table.call, [] { return #call; });
    HOSTKIT_OTHER_JNI_CALLS(HOSTKIT_REFUSE)
#undef HOSTKIT_REFUSE
    refuseGetModule(table);
}

void CheckedJni::refuse(jarray array) {
    refused = array == nullptr ? 0 : id(array);
}

void CheckedJni::note(const char* call, const Array& array, jint mode) {
    if (logging) {
        log.push_back({call, array.id, mode});
    }
}

void* CheckedJni::pin(const char* call, Array& array, jboolean* isCopy) {
    note(call, array, 0);
    if (array.id == refused) {
        return nullptr;
    }
    ++pins;
    if (isCopy) {
        *isCopy = access == ArrayAccess::copy;
    }
    Pins& ofArray = held[array.id];
    if (access == ArrayAccess::direct) {
        ++ofArray.direct;
        return array.block.content();
    }
    ofArray.copies.push_back(array.block);
    return ofArray.copies.back().content();
}

void CheckedJni::unpin(const char* call, Array& array, void* data, jint mode) {
    note(call, array, mode);
    checkBlock(array, array.block);
    const bool ends = mode != JNI_COMMIT;
    Pins& ofArray = held[array.id];
    if (data == array.block.content() && ofArray.direct > 0) {
        ofArray.direct -= ends ? 1 : 0;
        pins -= ends ? 1 : 0;
        return;
    }
    const auto copy = std::ranges::find(ofArray.copies, data, &Block::content);
    if (copy == ofArray.copies.end()) {
        endProgram(std::string(call) + ": array " + std::to_string(array.id) +
                   " was released with a pointer that no Get call returned");
    }
    checkBlock(array, *copy);
    if (mode != JNI_ABORT) {
        std::copy_n(copy->content(), copy->contentBytes(), array.block.content());
    }
    if (ends) {
        ofArray.copies.erase(copy);
        --pins;
    }
}

void CheckedJni::checkBlock(const Array& array, Block& block) {
    const auto elementBytes = static_cast<std::ptrdiff_t>(array.elementBytes);
    const auto guard = static_cast<std::ptrdiff_t>(block.guardBytes);
    const auto content = static_cast<std::ptrdiff_t>(block.contentBytes());
    const auto checkZone = [&](std::ptrdiff_t firstByte) {
        for (std::ptrdiff_t at = firstByte; at < firstByte + guard; at += elementBytes) {
            const auto element = block.content() + at;
            if (std::any_of(element, element + elementBytes,
                            [](std::byte value) { return value != guardByte; })) {
                found.push_back({array.id, at / elementBytes});
                std::fill_n(element, elementBytes, guardByte);
            }
        }
    };
    checkZone(-guard);
    checkZone(content);
}

const std::vector<GuardDamage>& CheckedJni::checkGuards() {
    for (const auto& array : arrays()) {
        checkBlock(*array, array->block);
        for (Block& copy : held[array->id].copies) {
            checkBlock(*array, copy);
        }
    }
    return found;
}

}  // namespace hostkit
