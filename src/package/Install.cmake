# What a host's developers get: library, headers, the CMake package and the pkg-config file. None of them names the
# place of installation, so that the whole tree may be moved.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/AmbCodPostales")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/AmbCodPostales")

install(TARGETS AmbCodPostales EXPORT AmbCodPostalesTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT dev
  FILE_SET HEADERS DESTINATION "${header_dir}" COMPONENT dev)
install(EXPORT AmbCodPostalesTargets NAMESPACE AmbCodPostales:: DESTINATION "${package_dir}" COMPONENT dev)

configure_package_config_file(AmbCodPostalesConfig.cmake.in "${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostalesConfig.cmake"
  INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
# Below 1.0 a change of the second number may break a host.
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostalesConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostalesConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostalesConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT dev)

# Path from the pkg-config file to the prefix, whatever the machine's library folder is called.
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH pkgconfig_to_prefix "/${pkgconfig_dir}" "/")
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix "${pkgconfig_to_prefix}")
configure_file(AmbCodPostales.pc.in "${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostales.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/AmbCodPostales.pc" DESTINATION "${pkgconfig_dir}" COMPONENT dev)
