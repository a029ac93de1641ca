# Toolchain for WebAssembly with 128-bit vectors. Tests run in Node.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msimd128")
# Each program is a single file. If the WebAssembly code were in a second file, Emscripten's loader would mistake Node
# for a browser and fail to load it.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-sSINGLE_FILE -sEXIT_RUNTIME -sALLOW_MEMORY_GROWTH")
set(CMAKE_CROSSCOMPILING_EMULATOR node)
