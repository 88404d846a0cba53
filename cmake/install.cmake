# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` puts down: the shared library, the public headers with the platform declarations that
# they rest on, a pkg-config file and a CMake package.
include(CMakePackageConfigHelpers)

set(OVK_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ovk-ethernet)

install(TARGETS ovk-ethernet EXPORT ovk-ethernet-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ platform/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ovk-ethernet FILES_MATCHING PATTERN "*.h")

install(EXPORT ovk-ethernet-targets NAMESPACE ovk:: DESTINATION ${OVK_INSTALL_CMAKEDIR})
configure_package_config_file(cmake/ovk-ethernet-config.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/ovk-ethernet-config.cmake INSTALL_DESTINATION ${OVK_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ovk-ethernet-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/ovk-ethernet-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/ovk-ethernet-config-version.cmake
    DESTINATION ${OVK_INSTALL_CMAKEDIR})

# The file finds its prefix by where it lies, so an installed tree may be moved.
file(RELATIVE_PATH OVK_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/ovk-ethernet.pc.in ovk-ethernet.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ovk-ethernet.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
