# Builds SOURCE with COMPILER and the flags that pkg-config prints for the library installed in PREFIX, and runs it.
file(GLOB_RECURSE pc_file ${PREFIX}/ylog.pc)
cmake_path(GET pc_file PARENT_PATH folder)
set(ENV{PKG_CONFIG_PATH} ${folder})
execute_process(COMMAND pkg-config --cflags --libs ylog
  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND pkg-config --variable=libdir ylog
  OUTPUT_VARIABLE libdir OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
# pkg-config escapes blanks in paths for a shell.
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(libdir UNIX_COMMAND "${libdir}")
execute_process(COMMAND ${COMPILER} -std=c++20 ${SOURCE} ${flags} -Wl,-rpath,${libdir} -o ${PROGRAM}
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} COMMAND_ERROR_IS_FATAL ANY)
