# Toolchain for WebAssembly with 128-bit vectors. Tests run in Node.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msimd128")
# Each program is a single file. Emscripten's loader for a second file would mistake Node for a browser.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-sSINGLE_FILE -sEXIT_RUNTIME -sALLOW_MEMORY_GROWTH")
set(CMAKE_CROSSCOMPILING_EMULATOR node)
