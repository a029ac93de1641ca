# find_package(Velmora CONFIG): the targets Velmora::peluxVelmora, the library with its headers, and on a desktop
# Velmora::hostkit, a host in C++ that needs no display.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/VelmoraPlatform.cmake)
if(NOT TARGET Velmora::jni)
  add_library(Velmora::jni ALIAS velmoraJni)
  add_library(Velmora::gles ALIAS velmoraGles)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/VelmoraTargets.cmake)
