# What is installed, and the Debian packages of it: libzorvikrt1 to run programs, libzorvikrt-dev to build
# them, zorvikrt-tools with zorvikrt-eval.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(special)
if(ZORVIKRT_SPECIAL)
  set(special zorvikrt_special)
endif()
set(arrays)
if(TARGET zorvikrt_arrays)
  set(arrays zorvikrt_arrays)
  install(FILES "${generated}/zorvikrt/array_entries.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zorvikrt" COMPONENT development)
endif()
install(TARGETS zorvikrt zorvikrt_text zorvikrt_cxx ${special} ${arrays} EXPORT zorvikrt
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY include/zorvikrt DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
install(FILES "${generated}/zorvikrt/entries.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zorvikrt" COMPONENT development)
install(FILES "${fortran_module}" "${fortran_special_module}"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/zorvikrt" COMPONENT development)
install(FILES docs/arrays.md docs/cxx.md docs/fortran.md docs/fortran-generics.md docs/library.md docs/special.md docs/use.md
  docs/explorer.md docs/windows.md "${generated}/entries.md"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libzorvikrt-dev" COMPONENT development)
if(ZORVIKRT_TOOLS)
  file(RELATIVE_PATH libraries_from_tools "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(zorvikrt-eval PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_tools}")
  install(TARGETS zorvikrt-eval RUNTIME COMPONENT tools)
endif()

# find_package(zorvikrt)
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/zorvikrt")
set(fortran_source "${CMAKE_INSTALL_DATADIR}/zorvikrt/zorvikrt.f90")
set(fortran_special_source "${CMAKE_INSTALL_DATADIR}/zorvikrt/zorvikrt_special.f90")
configure_package_config_file(cmake/zorvikrtConfig.cmake.in "${generated}/zorvikrtConfig.cmake"
  INSTALL_DESTINATION "${package_folder}" PATH_VARS fortran_source fortran_special_source)
write_basic_package_version_file("${generated}/zorvikrtConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES "${generated}/zorvikrtConfig.cmake" "${generated}/zorvikrtConfigVersion.cmake"
  DESTINATION "${package_folder}" COMPONENT development)
install(EXPORT zorvikrt NAMESPACE zorvikrt:: FILE zorvikrtTargets.cmake
  DESTINATION "${package_folder}" COMPONENT development)

# pkg-config, from wherever the files lie.
file(RELATIVE_PATH prefix_from_pc "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" prefix_from_pc "${prefix_from_pc}")
configure_file(cmake/zorvikrt.pc.in "${generated}/zorvikrt.pc" @ONLY)
install(FILES "${generated}/zorvikrt.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

# --- Packages ----------------------------------------------------------------------------------
if(WIN32 OR NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorvikrt)
set(CPACK_PACKAGE_VENDOR "zorvikrt")
set(CPACK_PACKAGE_CONTACT "The zorvikrt developers <zorvikrt@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "intrinsic functions of a Fortran compiler for x86")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(ZORVIKRT_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(ZORVIKRT_I386)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
endif()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzorvikrt1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS libc6)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/triggers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared libraries.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzorvikrt-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzorvikrt1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers for C and C++, the Fortran module as source, and what build systems need to find them.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zorvikrt-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libzorvikrt1 (= ${PROJECT_VERSION}), libc6, libstdc++6, libgcc-s1")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "zorvikrt-eval, which calls any entry and shows its result to the last bit.")
include(CPack)
