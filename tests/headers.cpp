// This file exists so that CMake compiles the precompiled header.
