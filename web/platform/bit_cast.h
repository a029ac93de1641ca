#pragma once

// Defines std::bit_cast, which Emscripten's C++ library lacks. The toolchain file includes this header before every
// source.

#include <bit>

#ifndef __cpp_lib_bit_cast
namespace std {

template <class To, class From>
requires(sizeof(To) == sizeof(From)) constexpr To bit_cast(const From& from) noexcept {
    return __builtin_bit_cast(To, from);
}

}  // namespace std
#endif
