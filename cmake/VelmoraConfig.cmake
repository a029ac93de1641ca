# find_package(Velmora CONFIG) defines the target Velmora::peluxVelmora, the library with its headers. On a desktop, it
# also defines Velmora::hostkit, a C++ host that needs no display.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/VelmoraPlatform.cmake)
if(NOT TARGET Velmora::jni)
  add_library(Velmora::jni ALIAS velmoraJni)
  add_library(Velmora::gles ALIAS velmoraGles)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/VelmoraTargets.cmake)
