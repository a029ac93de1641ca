#include <cstddef>

// Removes exceptions from the module.

extern "C" {

/// The module has no environment variables.
char** __environ = nullptr;  // NOLINT(bugprone-reserved-identifier)

void* __cxa_allocate_exception(std::size_t size) noexcept;

/// Every throw calls this function first. The element is given only valid images and scripts, and catches nothing, so a
/// throw stops the module.
void* __cxa_allocate_exception(std::size_t /*size*/) noexcept {
    __builtin_trap();
}
}
