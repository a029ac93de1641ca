# Toolchain for WebAssembly with 128-bit vectors, for browsers.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)  # The JDK with jni.h is outside the sysroot.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msimd128")
