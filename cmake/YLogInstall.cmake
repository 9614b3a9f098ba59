include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/YLog)

install(TARGETS YLog EXPORT YLogTargets FILE_SET HEADERS INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT YLogTargets NAMESPACE YLog:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/YLogConfig.cmake.in ${PROJECT_BINARY_DIR}/YLogConfig.cmake
  INSTALL_DESTINATION ${package_dir})
# Before 1.0 a new minor version may change the binary interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/YLogConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/YLogConfig.cmake ${PROJECT_BINARY_DIR}/YLogConfigVersion.cmake
  DESTINATION ${package_dir})

# The pkg-config file finds the prefix from its own location, so that an installation may be moved.
file(RELATIVE_PATH YLOG_PREFIX_FROM_PC_FILE ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" YLOG_PREFIX_FROM_PC_FILE ${YLOG_PREFIX_FROM_PC_FILE})
set(YLOG_PC_INCLUDEDIR [[${prefix}]])
set(YLOG_PC_LIBDIR [[${prefix}]])
cmake_path(APPEND YLOG_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(APPEND YLOG_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/ylog.pc.in ${PROJECT_BINARY_DIR}/ylog.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ylog.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
