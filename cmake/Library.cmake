# How a shared library of this project is compiled, linked, named and installed.

include_guard(GLOBAL)

include(CMakePackageConfigHelpers)

set(TESSEL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Tessel)

# How the object files of a shared library are compiled.
function(tessel_library_objects target)
  tessel_compile_options(${target})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(TESSEL_HAS_NO_SEMANTIC_INTERPOSITION)
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  endif()
  if(TESSEL_HAS_TLS_MODEL)
    # What a thread keeps for itself is small enough for the room that a program leaves to libraries loaded
    # late, and is reached without a call.
    target_compile_options(${target} PRIVATE -ftls-model=initial-exec)
  endif()
endfunction()

# The library's file is lib<target>.so.<version>, which is its soname as well. It finds its companions beside
# itself, in the build tree as well as where it is installed. Only what the version script names is exported:
# visibility alone lets instances of the standard library's templates through.
function(tessel_library target)
  set(version_script ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  add_library(Tessel::${target} ALIAS ${target})
  tessel_library_objects(${target})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION}
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH $ORIGIN
    LINK_DEPENDS ${version_script})
  target_link_options(${target} PRIVATE
    -Wl,--version-script=${version_script} -Wl,--hash-style=gnu -Wl,--as-needed -Wl,-O1 -Wl,-Bsymbolic-functions)
  if(NOT TESSEL_SANITIZE)
    # A sanitized library finds the sanitizer in the program that loads it.
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

# Headers of the current folder that are installed; all others the library keeps to itself.
function(tessel_public_headers target)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${ARGN})
endfunction()

# Adds the targets to what "cmake --install" puts below its prefix.
function(tessel_install)
  install(TARGETS ${ARGN} EXPORT TesselTargets FILE_SET HEADERS)
  install(EXPORT TesselTargets NAMESPACE Tessel:: DESTINATION ${TESSEL_PACKAGE_DIR})

  configure_package_config_file(cmake/TesselConfig.cmake.in TesselConfig.cmake
    INSTALL_DESTINATION ${TESSEL_PACKAGE_DIR}
    NO_SET_AND_CHECK_MACRO)
  write_basic_package_version_file(TesselConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES
    ${PROJECT_BINARY_DIR}/TesselConfig.cmake ${PROJECT_BINARY_DIR}/TesselConfigVersion.cmake
    DESTINATION ${TESSEL_PACKAGE_DIR})

  # The installed files may be moved as a whole, so their place is told from that of the file itself.
  file(RELATIVE_PATH TESSEL_PREFIX_FROM_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" TESSEL_PREFIX_FROM_PKGCONFIG ${TESSEL_PREFIX_FROM_PKGCONFIG})
  configure_file(cmake/tessel.pc.in tessel.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/tessel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
