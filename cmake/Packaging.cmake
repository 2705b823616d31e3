# Debian packages with CPack, one per install component:
#   runtime -> libdbusinterfaces1       the shared library (SONAME libDBusInterfaces.so.1)
#   dev     -> libdbusinterfaces-dev    headers, CMake package, pkg-config file, examples
#   tools   -> dbusinterfaces-tools     measctl, the simulator, their man pages and completion
#   doc     -> dbusinterfaces-doc       the HTML API reference
# Build with -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_BUILD_TYPE=Release, then `cpack` in the
# build directory; tools/run-package-test.sh does that and installs them in a bare root.

set(DBUSINTERFACES_PACKAGES runtime dev tools doc)
set(package_runtime libdbusinterfaces${PROJECT_VERSION_MAJOR})
set(package_dev libdbusinterfaces-dev)
set(package_tools dbusinterfaces-tools)
set(package_doc dbusinterfaces-doc)

# Debian wants a copyright file and a changelog in every package's doc folder.
set(debian_changelog "${CMAKE_BINARY_DIR}/debian/changelog.Debian.gz")
string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file("${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in" "${CMAKE_BINARY_DIR}/debian/changelog" @ONLY)
execute_process(COMMAND gzip -9 -n -c "${CMAKE_BINARY_DIR}/debian/changelog"
    OUTPUT_FILE "${debian_changelog}" COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS DBUSINTERFACES_PACKAGES)
    install(FILES "${CMAKE_CURRENT_LIST_DIR}/debian/copyright" "${debian_changelog}"
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package_${component}} COMPONENT ${component})
endforeach()

# The examples go with the development package, to be copied.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/"
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package_dev}/examples COMPONENT dev)

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${DBUSINTERFACES_PACKAGES})
set(CPACK_PACKAGE_NAME dbusinterfaces)
set(CPACK_PACKAGE_VENDOR "libDBusInterfaces")
set(CPACK_PACKAGE_CONTACT "libDBusInterfaces maintainers <maintainers@users.noreply.c-seed-b0959afc.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# The tools link the library of the runtime package, which dpkg-shlibdeps finds here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    "${CMAKE_BINARY_DIR}/_CPack_Packages/Linux/DEB/${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-Linux/runtime${CMAKE_INSTALL_FULL_LIBDIR}")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${package_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# Debian runs ldconfig through a trigger, not from the package's own scripts.
file(WRITE "${CMAKE_BINARY_DIR}/debian/runtime/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_BINARY_DIR}/debian/runtime/triggers")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Qt client proxies for a measurement application's D-Bus objects
libDBusInterfaces is the library through which the programs of a measurement
instrument talk to a running measurement application over D-Bus: one typed
proxy class per kind of element, the shared bus connection, a registry of
proxies and queries about an application.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${package_dev})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${DBUSINTERFACES_QT_DEV_PACKAGE}")
set(CPACK_COMPONENT_DEV_DESCRIPTION "development files for libDBusInterfaces
Headers, the CMake package (find_package(DBusInterfaces)), the pkg-config
file and example programs of libDBusInterfaces, the Qt client library of a
measurement application's D-Bus objects.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${package_tools})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "command-line client and simulator of a measurement application
measctl reads, sets, watches and commands the elements of a running
measurement application over D-Bus. dbusinterfaces-simulator behaves like
such an application, from a JSON model, with faults on demand.")

set(CPACK_DEBIAN_DOC_PACKAGE_NAME ${package_doc})
set(CPACK_DEBIAN_DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOC_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOC_DESCRIPTION "API reference of libDBusInterfaces
The HTML reference of every public class and function of libDBusInterfaces,
the Qt client library of a measurement application's D-Bus objects.")

include(CPack)
