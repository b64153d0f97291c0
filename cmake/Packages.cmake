# Settings for cpack, which makes a Debian package of each component and an archive of all. tools/packages.sh calls
# it.

set(TESSEL_MAINTAINER "Tessel maintainers <tessel@example.org>" CACHE STRING "The maintainer of the packages")

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessel COMPONENT Tessel_doc)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/guide ${PROJECT_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessel COMPONENT Tessel_doc)
# Includes the reference if the target "docs" was built.
install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessel COMPONENT Tessel_doc OPTIONAL)

set(CPACK_PACKAGE_NAME tessel)
set(CPACK_PACKAGE_VENDOR Tessel)
set(CPACK_PACKAGE_CONTACT ${TESSEL_MAINTAINER})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
string(TOLOWER "tessel-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" CPACK_PACKAGE_FILE_NAME)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)

# Describes the Debian package of a component: its section, and its relations to others as pairs of name and value.
macro(tessel_debian_package component name section description)
  string(TOUPPER Tessel_${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${description}")
  set(relations ${ARGN})
  while(relations)
    list(POP_FRONT relations relation value)
    set(CPACK_DEBIAN_${upper}_PACKAGE_${relation} "${value}")
  endwhile()
endmacro()

set(runtime libtessel${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(same_runtime "${runtime} (= ${PROJECT_VERSION})")
tessel_debian_package(runtime ${runtime} libs "general application class library")
tessel_debian_package(dev libtessel-dev libdevel "general application class library, to build programs with"
  DEPENDS "${same_runtime}" SUGGESTS libtessel-doc)
tessel_debian_package(dbg ${runtime}-dbg debug "general application class library, for debuggers"
  DEPENDS "${same_runtime}")
tessel_debian_package(programs tessel utils "programs of the general application class library"
  DEPENDS "${same_runtime}")
tessel_debian_package(doc libtessel-doc doc "general application class library, guide and reference"
  ARCHITECTURE all)

# Both scripts update the loader's cache, except when the package is installed below another folder.
foreach(script IN ITEMS postinst postrm)
  file(WRITE ${PROJECT_BINARY_DIR}/packages/${script} "#!/bin/sh\nset -e\n[ -n \"$DPKG_ROOT\" ] || ldconfig\n")
  list(APPEND CPACK_DEBIAN_TESSEL_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packages/${script})
endforeach()

include(CPack)
