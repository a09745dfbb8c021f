# 32-bit Windows, cross-built with Debian's g++-mingw-w64-i686-posix.
set(CMAKE_SYSTEM_PROCESSOR i686)
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-march=i686 -mtune=generic")
endforeach()
set(windows_machine i686)
set(windows_launcher wine)
include("${CMAKE_CURRENT_LIST_DIR}/windows.cmake")
