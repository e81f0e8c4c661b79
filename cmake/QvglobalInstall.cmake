# Installs the headers (keeping their folders, under include/qvglobal), the
# shared library, the qv tool, a CMake package and a pkg-config file.
# Consumers write either
#   find_package(qvglobal REQUIRED)  +  target_link_libraries(x qvglobal::qvglobal)
# or
#   pkg-config --cflags --libs qvglobal
include(CMakePackageConfigHelpers)

set(QVGLOBAL_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/qvglobal")

install(TARGETS qvglobal
  EXPORT qvglobalTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/qvglobal")

if(TARGET qv)
  install(TARGETS qv RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(EXPORT qvglobalTargets
  NAMESPACE qvglobal::
  FILE qvglobalTargets.cmake
  DESTINATION "${QVGLOBAL_INSTALL_CMAKEDIR}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/qvglobalConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/qvglobalConfig.cmake"
  INSTALL_DESTINATION "${QVGLOBAL_INSTALL_CMAKEDIR}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/qvglobalConfigVersion.cmake"
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/qvglobalConfig.cmake"
  "${PROJECT_BINARY_DIR}/qvglobalConfigVersion.cmake"
  DESTINATION "${QVGLOBAL_INSTALL_CMAKEDIR}")

# The .pc file finds the prefix from its own location (${pcfiledir}), so it
# stays right for `cmake --install --prefix <other>` and for a moved tree.
set(_pc_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(QVGLOBAL_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH _pc_to_prefix "/root/${_pc_dir}" "/root")
  string(REGEX REPLACE "/$" "" _pc_to_prefix "${_pc_to_prefix}")
  set(QVGLOBAL_PC_PREFIX "\${pcfiledir}/${_pc_to_prefix}")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/qvglobal.pc.in"
               "${PROJECT_BINARY_DIR}/qvglobal.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qvglobal.pc" DESTINATION "${_pc_dir}")
