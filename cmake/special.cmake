# The archive zorvikrt_special, where the headers of Boost.Math are. ZORVIKRT_SPECIAL tells later files.

option(ZORVIKRT_SPECIAL "Build the special functions, which need the headers of Boost.Math"
       ${PROJECT_IS_TOP_LEVEL})
if(NOT ZORVIKRT_SPECIAL)
  return()
endif()

# A cross compiler does not look where the machine's own headers are; these fit every target.
find_path(boost_headers boost/math/special_functions/bessel.hpp
  PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH)
if(NOT boost_headers)
  message(WARNING "no headers of Boost.Math: zorvikrt_special is left out; the package libboost-math-dev has them, "
                  "-DZORVIKRT_SPECIAL=OFF silences this")
  set(ZORVIKRT_SPECIAL OFF)
  return()
endif()
# Only Boost out of that folder, for the target has a C library of its own.
file(MAKE_DIRECTORY "${generated}/boost_headers")
file(CREATE_LINK "${boost_headers}/boost" "${generated}/boost_headers/boost" SYMBOLIC)

file(GLOB special_sources CONFIGURE_DEPENDS src/special/*.cpp)
add_library(zorvikrt_special STATIC ${special_sources})
add_library(zorvikrt::special ALIAS zorvikrt_special)
target_link_libraries(zorvikrt_special PUBLIC zorvikrt_text)
target_include_directories(zorvikrt_special PRIVATE src)
target_include_directories(zorvikrt_special SYSTEM PRIVATE "${generated}/boost_headers")
target_compile_definitions(zorvikrt_special PRIVATE NDEBUG)
# Tables are filled when a program starts, before there are threads.
target_compile_options(zorvikrt_special PRIVATE
  -fno-exceptions -fno-rtti -fno-threadsafe-statics ${warnings})
set_target_properties(zorvikrt_special PROPERTIES
  POSITION_INDEPENDENT_CODE ON CXX_EXTENSIONS ON CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON EXPORT_NAME special)
