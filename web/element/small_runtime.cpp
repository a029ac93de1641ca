#include <cstddef>

// Replaces functions of the C and C++ libraries, so that the code for exceptions and environment variables is left out
// of the module.

// The libraries give these functions and variables their names.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

/// List of the environment variables. It is empty, because the module uses none.
char** __environ = nullptr;

void* __cxa_allocate_exception(std::size_t size) noexcept;

/// Every throw expression calls this function first. This implementation stops the module. The element passes only
/// valid images and scripts to the module, so nothing throws.
void* __cxa_allocate_exception(std::size_t /*size*/) noexcept {
    __builtin_trap();
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
