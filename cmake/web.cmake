# Toolchain: WebAssembly with 128-bit vectors, run in a browser.
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)  # jni.h comes from a JDK
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msimd128")
