# jni.h: in the sysroot of a device toolchain, in a JDK elsewhere.
find_path(JNI_INCLUDE_DIR jni.h
  HINTS $ENV{JAVA_HOME}/include
  PATHS /usr/lib/jvm/default-java/include /usr/lib/jvm/java-17-openjdk-amd64/include
  REQUIRED)
add_library(velmoraJni INTERFACE)
target_include_directories(velmoraJni SYSTEM INTERFACE ${JNI_INCLUDE_DIR})
if(EXISTS ${JNI_INCLUDE_DIR}/linux/jni_md.h)
  target_include_directories(velmoraJni SYSTEM INTERFACE ${JNI_INCLUDE_DIR}/linux)
endif()
