# 32-bit x86 on a 64-bit Debian, with the compilers of g++-multilib and gfortran-multilib.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_COMPILER gcc)
foreach(language C CXX Fortran)
  set(CMAKE_${language}_FLAGS_INIT "-m32 -march=i686 -mtune=generic")
endforeach()
set(CMAKE_ASM_FLAGS_INIT "-m32")

if(NOT DEFINED CACHE{ZORVIKRT_M32_WORKS})
  file(WRITE "${CMAKE_BINARY_DIR}/m32.cpp" "#include <vector>\nint main() { return std::vector<int>(1).size() != 1; }\n")
  execute_process(COMMAND g++ -m32 "${CMAKE_BINARY_DIR}/m32.cpp" -o "${CMAKE_BINARY_DIR}/m32"
                  RESULT_VARIABLE failed OUTPUT_QUIET ERROR_QUIET)
  if(failed)
    message(FATAL_ERROR "g++ cannot build 32-bit programs: install the package g++-multilib")
  endif()
  set(ZORVIKRT_M32_WORKS TRUE CACHE INTERNAL "")
endif()
