include(CheckCXXSourceCompiles)

# Sets YLOG_LIBBACKTRACE_TARGET to a target to link for names and lines in call stacks: the libbacktrace that comes
# with gcc, which clang finds as well. It is empty if there is none, or if it is switched off.
set(YLOG_LIBBACKTRACE_TARGET "")
if(NOT YLOG_USE_LIBBACKTRACE)
  return()
endif()

execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libbacktrace.a
  OUTPUT_VARIABLE archive OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
cmake_path(GET archive PARENT_PATH folder)
add_library(ylog_libbacktrace STATIC IMPORTED)
# The folder of its header is searched last, because it also contains headers of gcc that clang has its own of. Its
# functions are not exported, because a program may have another libbacktrace.
set_target_properties(ylog_libbacktrace PROPERTIES
  IMPORTED_LOCATION "${archive}"
  INTERFACE_COMPILE_OPTIONS "SHELL:-idirafter \"${folder}/include\""
  INTERFACE_LINK_OPTIONS LINKER:--exclude-libs,libbacktrace.a)

block(SCOPE_FOR VARIABLES)
  set(CMAKE_REQUIRED_FLAGS -fPIC)
  set(CMAKE_REQUIRED_LIBRARIES ylog_libbacktrace)
  set(CMAKE_REQUIRED_LINK_OPTIONS -shared LINKER:-z,defs)
  check_cxx_source_compiles("
    #include <backtrace.h>
    void* Probe() { return backtrace_create_state(nullptr, 0, nullptr, nullptr); }"
    YLOG_LIBBACKTRACE_LINKS)
endblock()
if(YLOG_LIBBACKTRACE_LINKS)
  set(YLOG_LIBBACKTRACE_TARGET ylog_libbacktrace)
else()
  message(STATUS "No libbacktrace: call stacks show exported functions only, and no lines")
endif()
