# Toolchain: WebAssembly with 128-bit vectors, run under Node.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msimd128")
# One file a program: to load a second, the compiler's own loader takes Node for a browser.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-sSINGLE_FILE -sEXIT_RUNTIME -sALLOW_MEMORY_GROWTH")
set(CMAKE_CROSSCOMPILING_EMULATOR node)
