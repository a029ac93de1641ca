# Compile options and output folders for all targets of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

# By default, all libraries and programs are built into one folder, so that programs find the libraries. Gradle and
# projects that include this one choose other folders.
foreach(kind LIBRARY RUNTIME)
  if(PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_${kind}_OUTPUT_DIRECTORY)
    set(CMAKE_${kind}_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  endif()
endforeach()
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_BUILD_RPATH $ORIGIN)

set(VELMORA_SANITIZE "" CACHE STRING "Sanitizers to build with, in the format of -fsanitize=")
if(VELMORA_SANITIZE)
  add_compile_options(-fsanitize=${VELMORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VELMORA_SANITIZE})
  if(VELMORA_SANITIZE MATCHES undefined)
    # The vptr check needs run-time type information, but the library is compiled with -fno-rtti.
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()

add_library(velmoraWarnings INTERFACE)
target_compile_options(velmoraWarnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wold-style-cast -Wnon-virtual-dtor -Wcast-qual -Wundef -Wmissing-declarations)

# Never fuse a multiplication with an addition: a fused operation rounds once instead of twice, so its bits would
# differ from those of processors and compilers that do not fuse.
add_compile_options(-ffp-contract=off)
