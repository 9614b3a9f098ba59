include(GenerateExportHeader)

# ylog_library(<target> NAME <Name> HEADERS ... SOURCES ... [DEPENDS ...] [LIBRARIES ...])
#
# An object library that becomes part of the one shared object. Its public headers, below
# include/<Name>/, join the header set of YLog, which builds, checks and installs each of them.
# DEPENDS are the libraries of this tree that it uses, LIBRARIES what only its sources need.
function(ylog_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "HEADERS;SOURCES;DEPENDS;LIBRARIES")
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/include)
  string(TOUPPER ${arg_NAME} upper)

  add_library(${target} OBJECT ${arg_SOURCES})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC include ${generated})
  target_link_libraries(${target} PUBLIC ${arg_DEPENDS} PRIVATE ylog_build_flags ${arg_LIBRARIES})

  set(export_header ${generated}/${arg_NAME}/Export.h)
  generate_export_header(${target}
    EXPORT_FILE_NAME ${export_header}
    EXPORT_MACRO_NAME ${upper}_EXPORT
    NO_EXPORT_MACRO_NAME ${upper}_NO_EXPORT
    DEPRECATED_MACRO_NAME ${upper}_DEPRECATED
    STATIC_DEFINE ${upper}_STATIC
    INCLUDE_GUARD_NAME ${upper}_EXPORT_H)

  list(TRANSFORM arg_HEADERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/include/${arg_NAME}/)
  target_sources(YLog PUBLIC FILE_SET HEADERS
    BASE_DIRS ${CMAKE_CURRENT_SOURCE_DIR}/include ${generated}
    FILES ${arg_HEADERS} ${export_header})
  target_link_libraries(YLog PRIVATE ${target} ${arg_LIBRARIES})
endfunction()
