// CMake compiles this empty file to build the precompiled header headers.h.
