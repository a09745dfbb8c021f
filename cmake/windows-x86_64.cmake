# 64-bit Windows, cross-built with Debian's g++-mingw-w64-x86-64-posix.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(windows_machine x86_64)
set(windows_launcher wine64)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
