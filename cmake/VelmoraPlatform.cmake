# Finds threads, JNI and OpenGL ES on the current system. The build and the installed package both include this file, so
# that the package contains no path of the machine that built it.
include_guard(GLOBAL)

find_package(Threads REQUIRED)
add_library(velmoraJni INTERFACE)
add_library(velmoraGles INTERFACE)
if(ANDROID)  # The compiler finds the headers and libraries in the NDK's sysroot.
  target_link_libraries(velmoraGles INTERFACE GLESv2 EGL)
  return()
endif()

find_path(JNI_INCLUDE_DIR jni.h
  HINTS $ENV{JAVA_HOME}/include
  PATHS /usr/lib/jvm/default-java/include /usr/lib/jvm/java-17-openjdk-amd64/include
  REQUIRED)
target_include_directories(velmoraJni SYSTEM INTERFACE ${JNI_INCLUDE_DIR})
if(EXISTS ${JNI_INCLUDE_DIR}/linux/jni_md.h)
  target_include_directories(velmoraJni SYSTEM INTERFACE ${JNI_INCLUDE_DIR}/linux)
endif()

if(NOT EMSCRIPTEN)  # Emscripten's linker adds GL to the page.
  find_library(EGL_LIBRARY EGL REQUIRED)
  find_library(GLESV2_LIBRARY GLESv2 REQUIRED)
  find_path(GLES_INCLUDE_DIR GLES2/gl2.h REQUIRED)
  target_link_libraries(velmoraGles INTERFACE ${GLESV2_LIBRARY} ${EGL_LIBRARY})
  target_include_directories(velmoraGles SYSTEM INTERFACE ${GLES_INCLUDE_DIR})
endif()
