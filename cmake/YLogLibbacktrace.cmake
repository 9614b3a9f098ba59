include(CheckCXXSourceCompiles)

# Sets YLOG_LIBBACKTRACE_TARGET to a target to link for names and lines in call stacks: libbacktrace as it comes
# with gcc, in folders that clang knows, too. To nothing where there is none, or where it is switched off.
set(YLOG_LIBBACKTRACE_TARGET "")
if(NOT YLOG_USE_LIBBACKTRACE)
  return()
endif()

execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libbacktrace.a
  OUTPUT_VARIABLE archive OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
cmake_path(GET archive PARENT_PATH folder)
if(NOT EXISTS "${archive}" OR NOT EXISTS "${folder}/include/backtrace.h")
  message(STATUS "No libbacktrace: call stacks show exported functions only, and no lines")
  return()
endif()

# The header alone: beside it stand gcc's own, which clang must not find.
set(include ${PROJECT_BINARY_DIR}/libbacktrace/include)
configure_file(${folder}/include/backtrace.h ${include}/backtrace.h COPYONLY)

block(SCOPE_FOR VARIABLES)
  set(CMAKE_REQUIRED_FLAGS -fPIC)
  set(CMAKE_REQUIRED_INCLUDES ${include})
  set(CMAKE_REQUIRED_LIBRARIES ${archive})
  set(CMAKE_REQUIRED_LINK_OPTIONS -shared LINKER:-z,defs LINKER:--exclude-libs,libbacktrace.a)
  check_cxx_source_compiles("
    #include <backtrace.h>
    void* Probe() { return backtrace_create_state(nullptr, 0, nullptr, nullptr); }"
    YLOG_LIBBACKTRACE_LINKS)
endblock()
if(NOT YLOG_LIBBACKTRACE_LINKS)
  return()
endif()

# The library reads files for it: see DebugFiles_libbacktrace.cpp. An archive that this does not fit is of no use,
# since its own way may end the process. Whoever builds for another system may set the result beforehand.
if(NOT DEFINED YLOG_LIBBACKTRACE_WORKS AND CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  message(STATUS "libbacktrace cannot be tried out here, and is left out unless YLOG_LIBBACKTRACE_WORKS is set to 0")
  return()
endif()
if(NOT DEFINED YLOG_LIBBACKTRACE_WORKS)
  set(sources ${PROJECT_SOURCE_DIR}/Foundation/YBase/src)
  try_run(YLOG_LIBBACKTRACE_WORKS YLOG_LIBBACKTRACE_BUILDS
    SOURCES ${PROJECT_SOURCE_DIR}/cmake/libbacktrace_probe.cpp ${sources}/DebugFiles_libbacktrace.cpp
      ${sources}/RegularFile.cpp
    CMAKE_FLAGS -DINCLUDE_DIRECTORIES=${include}
    COMPILE_DEFINITIONS -g
    LINK_LIBRARIES ${archive}
    CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON)
endif()
if(NOT YLOG_LIBBACKTRACE_WORKS EQUAL 0)
  message(STATUS "libbacktrace does not work here: call stacks show exported functions only, and no lines")
  return()
endif()

add_library(ylog_libbacktrace INTERFACE)
target_include_directories(ylog_libbacktrace SYSTEM INTERFACE ${include})
target_link_libraries(ylog_libbacktrace INTERFACE ${archive})
# A program may have another of its own.
target_link_options(ylog_libbacktrace INTERFACE LINKER:--exclude-libs,libbacktrace.a)
set(YLOG_LIBBACKTRACE_TARGET ylog_libbacktrace)
