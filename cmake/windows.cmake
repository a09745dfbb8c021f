# What both toolchains for Windows share; `windows_machine` is the prefix of Debian's cross compilers and
# `windows_launcher` the folder under build/ in which scripts/wine.sh leaves its launcher.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_CXX_COMPILER ${windows_machine}-w64-mingw32-g++-posix)
set(CMAKE_C_COMPILER ${windows_machine}-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER ${windows_machine}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${windows_machine}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(ZORVIKRT_MINGW ${windows_machine}-w64-mingw32-g++-posix)
if(NOT ZORVIKRT_MINGW)
  string(REPLACE "_" "-" package ${windows_machine})
  message(FATAL_ERROR
    "no ${windows_machine}-w64-mingw32-g++-posix: install the package g++-mingw-w64-${package}-posix")
endif()

set(launcher "${CMAKE_CURRENT_LIST_DIR}/../build/${windows_launcher}/wine")
if(EXISTS "${launcher}")
  get_filename_component(CMAKE_CROSSCOMPILING_EMULATOR "${launcher}" ABSOLUTE)
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR "")
endif()
