# What the library takes from the system it is built and used on. Read by the build and by whoever finds the installed
# package, so that no path of the one machine ends up on the other.
include_guard(GLOBAL)

find_package(Threads REQUIRED)
add_library(velmoraJni INTERFACE)
add_library(velmoraGles INTERFACE)
if(ANDROID)  # The compiler finds all of it in its sysroot.
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

if(NOT EMSCRIPTEN)  # there GL comes with the link of the page
  find_library(EGL_LIBRARY EGL REQUIRED)
  find_library(GLESV2_LIBRARY GLESv2 REQUIRED)
  find_path(GLES_INCLUDE_DIR GLES2/gl2.h REQUIRED)
  target_link_libraries(velmoraGles INTERFACE ${GLESV2_LIBRARY} ${EGL_LIBRARY})
  target_include_directories(velmoraGles SYSTEM INTERFACE ${GLES_INCLUDE_DIR})
endif()
