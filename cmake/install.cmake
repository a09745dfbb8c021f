# What is installed; packages.cmake makes packages of it.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Folders that everyone can enter, whatever the umask of who installs.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The same bytes whenever and wherever it is made.
function(compressed from to)
  execute_process(
    COMMAND "${Python3_EXECUTABLE}" -c
      "import gzip, sys; sys.stdout.buffer.write(gzip.compress(open(sys.argv[1], 'rb').read(), 9, mtime=0))"
      "${PROJECT_SOURCE_DIR}/${from}"
    OUTPUT_FILE "${to}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(special)
if(ZORVIKRT_SPECIAL)
  set(special zorvikrt_special)
endif()
set(arrays)
if(TARGET zorvikrt_arrays)
  set(arrays zorvikrt_arrays)
  install(FILES "${generated}/zorvikrt/array_entries.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zorvikrt" COMPONENT development)
  install(FILES "${generated}/zorvikrt_arrays.f90" fortran/zorvikrt_mpi.f90
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zorvikrt" COMPONENT development)
endif()
install(TARGETS zorvikrt zorvikrt_text zorvikrt_cxx ${special} ${arrays} EXPORT zorvikrt
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(DIRECTORY include/zorvikrt DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT development)
install(FILES "${generated}/zorvikrt/entries.h" "${generated}/zorvikrt/version.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/zorvikrt" COMPONENT development)
install(FILES "${fortran_module}" "${fortran_special_module}"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/zorvikrt" COMPONENT development)
install(DIRECTORY docs/ DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libzorvikrt-dev" COMPONENT development
  FILES_MATCHING PATTERN "*.md" PATTERN "entries.md" EXCLUDE PATTERN "benchmarks*" EXCLUDE)
install(FILES "${generated}/entries.md"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libzorvikrt-dev" COMPONENT development)
if(ZORVIKRT_TOOLS)
  file(RELATIVE_PATH libraries_from_tools "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(zorvikrt-eval PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_tools}")
  install(TARGETS zorvikrt-eval RUNTIME COMPONENT tools)
  if(NOT WIN32)
    install(FILES explorer/zorvikrt-eval.bash RENAME zorvikrt-eval
      DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)
    install(PROGRAMS tools/promote_real8.py RENAME zorvikrt-promote
      DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
  endif()
  set(pages zorvikrt-eval.1)
  if(NOT WIN32)
    list(APPEND pages zorvikrt-gfortran.1 zorvikrt-promote.1)
  endif()
  foreach(page IN LISTS pages)
    compressed("docs/man/${page}" "${generated}/${page}.gz")
    install(FILES "${generated}/${page}.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
  endforeach()
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
