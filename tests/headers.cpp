// CMake compiles this file to build the precompiled header.
