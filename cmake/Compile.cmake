# How every target of the project is compiled and where its binaries go.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

# All libraries and programs lie side by side, and find each other there. A caller may choose other folders, as Gradle
# does, and so may a project that includes this one.
foreach(kind LIBRARY RUNTIME)
  if(PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_${kind}_OUTPUT_DIRECTORY)
    set(CMAKE_${kind}_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  endif()
endforeach()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_BUILD_RPATH $ORIGIN)

set(VELMORA_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
  if(VELMORA_SANITIZE MATCHES undefined)
    # The library has none of the type records that checks of dynamic types ask for.
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()

add_library(velmoraWarnings INTERFACE)
target_compile_options(velmoraWarnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wold-style-cast -Wnon-virtual-dtor -Wcast-qual -Wundef -Wmissing-declarations)

# Multiply-add stays multiply, then add: a fused one rounds once and would give other bits than the
# processors and compilers that do not fuse.
add_compile_options(-ffp-contract=off)
