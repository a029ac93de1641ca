#pragma once

namespace bench {

#if defined(__clang__)
inline constexpr const char* compiler = "clang++ " __clang_version__;
#else
inline constexpr const char* compiler = "g++ " __VERSION__;
#endif

}  // namespace bench
