# The installed package: find_package(kxboxlibrary) and kxboxlibrary.pc.
include(CMakePackageConfigHelpers)

set(config_dir "${CMAKE_INSTALL_LIBDIR}/cmake/kxboxlibrary")
install(EXPORT kxboxlibraryTargets NAMESPACE kxboxlibrary:: DESTINATION "${config_dir}")
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/kxboxlibraryConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/kxboxlibraryConfig.cmake" INSTALL_DESTINATION "${config_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kxboxlibraryConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/kxboxlibraryConfig.cmake"
  "${PROJECT_BINARY_DIR}/kxboxlibraryConfigVersion.cmake"
  DESTINATION "${config_dir}")

get_property(libraries GLOBAL PROPERTY KX_LIBRARIES)
list(REVERSE libraries)
list(TRANSFORM libraries PREPEND "-l")
list(JOIN libraries " " KX_PC_LIBRARIES)
# Relative to the file itself, as the configuration files for CMake are: cmake --install --prefix and
# DESTDIR may put the package anywhere.
set(pc_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH KX_PC_PREFIX "${pc_dir}" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH KX_PC_INCLUDEDIR "${pc_dir}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/kxboxlibrary.pc.in"
  "${PROJECT_BINARY_DIR}/kxboxlibrary.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kxboxlibrary.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
