# The Debian packages: libzorvikrt1 to run programs, libzorvikrt-dev to build them, zorvikrt-tools with the
# commands. The first two of both architectures may be installed side by side: what they share is the same
# file in both, the rest lies in a folder of the architecture.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorvikrt)
set(CPACK_PACKAGE_VENDOR "zorvikrt")
set(CPACK_PACKAGE_CONTACT "The zorvikrt developers <zorvikrt@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "intrinsic functions of a Fortran compiler for x86")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/debian/directories.cmake")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(revision "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
if(ZORVIKRT_I386)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
  set(triplet i386-linux-gnu)
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
  set(triplet x86_64-linux-gnu)
endif()

# Programs need the C library of this build or a later one, and the C++ library of this compiler.
file(WRITE "${generated}/c_library.c" "#include <features.h>\nversion __GLIBC__ . __GLIBC_MINOR__\n")
separate_arguments(flags NATIVE_COMMAND "${CMAKE_C_FLAGS}")
execute_process(COMMAND "${CMAKE_C_COMPILER}" ${flags} -E -P "${generated}/c_library.c"
                OUTPUT_VARIABLE c_library ERROR_QUIET)
string(REGEX MATCH "version ([0-9]+) \\. ([0-9]+)" c_library "${c_library}")
set(c_library "libc6 (>= ${CMAKE_MATCH_1}.${CMAKE_MATCH_2})")
string(REGEX MATCH "^[0-9]+" compiler "${CMAKE_CXX_COMPILER_VERSION}")

set(CPACK_COMPONENTS_ALL runtime development)
if(ZORVIKRT_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzorvikrt1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${c_library}")
file(WRITE "${generated}/shlibs" "")
foreach(library IN ITEMS libzorvikrt libzorvikrt_arrays)
  file(APPEND "${generated}/shlibs"
       "${library} ${PROJECT_VERSION_MAJOR} libzorvikrt1 (>= ${PROJECT_VERSION})\n")
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/cmake/debian/triggers;${generated}/shlibs")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "The shared libraries: REAL and COMPLEX functions, integer and bit intrinsics,\nCHARACTER, REAL*16 in double-double arithmetic, and its linear algebra.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzorvikrt-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzorvikrt1 (= ${revision})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers for C and C++, the Fortran module as source, and what build systems\nneed to find them.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zorvikrt-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
    "libzorvikrt1 (= ${revision}), ${c_library}, libstdc++6 (>= ${compiler}), libgcc-s1 (>= 4.2), python3:any")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "bash-completion, gfortran, libmpc3, libmpfr6, libquadmath0")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "The command zorvikrt-eval calls any entry and shows its result to the last\nbit; zorvikrt-gfortran compiles programs with these functions; zorvikrt-promote\nturns sources in REAL*8 into REAL*16.")

# What Debian wants beside the files. Only a folder of the architecture lets two architectures live together.
foreach(component IN ITEMS runtime development tools)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  if(NOT component STREQUAL "tools" AND CMAKE_INSTALL_LIBDIR MATCHES "${triplet}$")
    # CPack has had no variable for this field for long; it writes a value as it stands.
    string(APPEND CPACK_DEBIAN_${upper}_PACKAGE_SECTION "\nMulti-Arch: same")
  endif()
  install(FILES cmake/debian/copyright DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
  install(FILES "${generated}/changelog.Debian.gz" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}"
          COMPONENT ${component})
  if(EXISTS "${PROJECT_SOURCE_DIR}/cmake/debian/${package}.lintian-overrides")
    install(FILES "cmake/debian/${package}.lintian-overrides" RENAME ${package}
            DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component})
  endif()
endforeach()
compressed(cmake/debian/changelog "${generated}/changelog.Debian.gz")
include(CPack)
