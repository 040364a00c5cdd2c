# CPack makes three Debian packages: the library, the files for building a host with it, and the programs.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ambrel-codigos-postales)
set(CPACK_PACKAGE_VENDOR "Ambrel")
set(CPACK_PACKAGE_CONTACT "Ambrel Códigos Postales <mantenimiento@ambrel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package begins its description with one of its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime dev tools)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_revision})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The library that programs need is searched for in the build tree, as no installed package provides it yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Spanish postal addresses for desktop programs - shared library
Completes and validates addresses while people type them (municipality, street,
house number, postal code), keeps the street directory in dBase tables that
several workstations share, and imports streets from the cadastre's service.

En español: completa y valida direcciones mientras se escriben y mantiene el
callejero en tablas dBase compartidas. Este paquete es la biblioteca que los
programas cargan.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${dev_package})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${runtime_package} (= ${debian_version}), qt6-base-dev (>= 6.4)")
set(CPACK_DEBIAN_DEV_DESCRIPTION "Spanish postal addresses for desktop programs - development files
Headers, CMake package, pkg-config file and examples for programs that complete
and validate Spanish postal addresses.

En español: lo necesario para compilar programas que usan la biblioteca, con
ejemplos: el anfitrión mínimo, mensajes propios, el uso por lotes y la carga de
una edición del callejero.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${tools_package})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${debian_version})")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "Spanish postal addresses for desktop programs - programs
ambcp creates, loads, lists, searches, checks and reindexes the tables of the
street directory, keeps them up to date with the official one, and validates
files of addresses; ambrel is a form on which the library can be tried; and
callejero-simulado stands in for the cadastre's service.

En español: la orden del administrador de las tablas, un programa de muestra y
un servicio de callejero simulado.")

include(CPack)
