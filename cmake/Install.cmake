# Installs the library, its headers, the source of its Java class, hostkit, the platform stand-ins that were built,
# package files for CMake and pkg-config, the host guide and an example. No installed file contains the installation's
# path, so users can move the folder.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/Velmora)
# The stand-ins have the names of libraries of Android and of the kit. A folder of their own keeps other programs from
# loading them by accident. An Android app has only one folder for all its libraries.
set(standinFolder ${CMAKE_INSTALL_LIBDIR}/velmora)
if(ANDROID)
  set(standinFolder ${CMAKE_INSTALL_LIBDIR})
endif()

install(TARGETS peluxVelmora EXPORT VelmoraTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/velmora ${PROJECT_BINARY_DIR}/include/velmora
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/java/src/com DESTINATION ${CMAKE_INSTALL_DATADIR}/velmora/java)

foreach(standin velmora-jnigraphics velmora-log velmora-nuv-common)
  if(TARGET ${standin})
    install(TARGETS ${standin} EXPORT VelmoraTargets LIBRARY DESTINATION ${standinFolder})
  endif()
endforeach()
if(TARGET velmora-jnigraphics)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/jnigraphics/include/ ${PROJECT_SOURCE_DIR}/platform/log/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velmora-platform)
endif()
if(TARGET velmora-hostkit)
  install(TARGETS velmora-hostkit EXPORT VelmoraTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/hostkit DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN *.h PATTERN instruments EXCLUDE)
endif()

# The component `screensaver` contains the files that a user of XScreenSaver needs: the program, its libraries and its
# settings dialog.
if(TARGET velmora-screensaver)
  file(RELATIVE_PATH fromPrograms /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(velmora-screensaver PROPERTIES
    INSTALL_RPATH "$ORIGIN/${fromPrograms};$ORIGIN/${fromPrograms}/velmora")
  install(TARGETS velmora-screensaver RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT screensaver)
  # XScreenSaver looks for a dialog file that has the name of the program.
  install(FILES screensaver/velmora.xml RENAME velmora-screensaver.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/xscreensaver/config COMPONENT screensaver)
  install(TARGETS peluxVelmora LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT screensaver)
  foreach(standin velmora-jnigraphics velmora-log velmora-nuv-common)
    if(TARGET ${standin})
      install(TARGETS ${standin} LIBRARY DESTINATION ${standinFolder} COMPONENT screensaver)
    endif()
  endforeach()
endif()

install(FILES CHANGELOG.md LICENSE README.md docs/host-guide.md docs/kit.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY example/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/example)

install(EXPORT VelmoraTargets NAMESPACE Velmora:: DESTINATION ${packageFolder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VelmoraConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_SOURCE_DIR}/cmake/VelmoraConfig.cmake
  ${PROJECT_SOURCE_DIR}/cmake/VelmoraPlatform.cmake
  ${PROJECT_BINARY_DIR}/VelmoraConfigVersion.cmake
  DESTINATION ${packageFolder})

file(RELATIVE_PATH prefixFromPkgConfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
# On Android, jni.h is in the compiler's sysroot.
if(NOT ANDROID)
  get_filename_component(JDK ${JNI_INCLUDE_DIR} DIRECTORY)
  set(jniVariable "# The JDK with jni.h. For another folder, run pkg-config --define-variable=jdk=/path.\njdk=${JDK}\n")
  set(jniFlags " -I\${jdk}/include -I\${jdk}/include/linux")
endif()
foreach(name velmora velmora-hostkit)
  if(name STREQUAL velmora OR TARGET velmora-hostkit)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  endif()
endforeach()

if(PROJECT_IS_TOP_LEVEL)  # Archives for tools/package.
  set(CPACK_GENERATOR TXZ)
  set(system linux-${CMAKE_SYSTEM_PROCESSOR})
  if(ANDROID)
    set(system android-${CMAKE_ANDROID_ARCH_ABI})
  endif()
  set(CPACK_PACKAGE_FILE_NAME velmora-${PROJECT_VERSION}-${system})
  set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
  set(CPACK_STRIP_FILES ON)
  include(CPack)
endif()
