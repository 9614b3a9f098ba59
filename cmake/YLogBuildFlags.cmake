# The one place for compiler flags. Linked privately by every target of this tree, and never exported.
add_library(ylog_build_flags INTERFACE)
target_compile_features(ylog_build_flags INTERFACE cxx_std_20)
target_compile_options(ylog_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wundef -Wextra-semi
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond;-Wlogical-op;-Wuseless-cast>
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety;-Wthread-safety-beta;-Wreserved-identifier>
  $<$<BOOL:${YLOG_WARNINGS_AS_ERRORS}>:-Werror>)

if(YLOG_SANITIZE)
  set(flags -fsanitize=${YLOG_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_compile_options(ylog_build_flags INTERFACE ${flags})
  target_link_options(ylog_build_flags INTERFACE ${flags})
endif()
if(YLOG_COVERAGE)
  target_compile_options(ylog_build_flags INTERFACE --coverage)
  target_link_options(ylog_build_flags INTERFACE --coverage)
endif()
