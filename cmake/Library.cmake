# Compiles, links, names and installs a shared library of this project.

include_guard(GLOBAL)

include(CMakePackageConfigHelpers)

# Optimised libraries get their debug data in separate files. A sanitizer needs it in the library itself.
include(CMakeDependentOption)
cmake_dependent_option(TESSEL_DEBUG_FILES "Put the debug data of the libraries into files of their own"
  ${PROJECT_IS_TOP_LEVEL} "CMAKE_OBJCOPY;NOT WIN32;NOT CMAKE_BUILD_TYPE STREQUAL Debug;NOT TESSEL_SANITIZE" OFF)

set(TESSEL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Tessel)

# Compiler options for the object files of a shared library.
function(tessel_library_objects target)
  tessel_compile_options(${target})
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(TESSEL_DEBUG_FILES)
    # Otherwise clang++ omits types that it expects in the debug data of the standard library.
    target_compile_options(${target} PRIVATE -g $<$<CXX_COMPILER_ID:Clang>:-fstandalone-debug>)
  endif()
  if(TESSEL_HAS_NO_SEMANTIC_INTERPOSITION)
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  endif()
  if(TESSEL_HAS_TLS_MODEL)
    # Access to thread-local variables without a call. They are small enough for the space that a program reserves for
    # libraries that are loaded late.
    target_compile_options(${target} PRIVATE -ftls-model=initial-exec)
  endif()
endfunction()

# The library's file and soname is lib<target>.so.<major>.<minor>. It finds the other library in its own folder, in
# the build tree and after installation. Only the symbols in the version script are exported: visibility alone would
# also export instances of the standard library's templates.
#
# On Windows the file is <target>.<major>.<minor>.dll, beside the programs, since a program finds libraries there. The
# source says which symbols it exports.
function(tessel_library target)
  set(version_script ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  add_library(Tessel::${target} ALIAS ${target})
  tessel_library_objects(${target})
  if(WIN32)
    set_target_properties(${target} PROPERTIES
      PREFIX ""
      OUTPUT_NAME ${target}.${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
      RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
      ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
    return()
  endif()
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
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
  if(TESSEL_DEBUG_FILES)
    tessel_split_debug_data(${target})
  endif()
endfunction()

# Moves the debug data of a library to a file in the folder .debug/ beside it. The library has the name of that
# file, and debuggers look there. The symbol table remains in the library.
function(tessel_split_debug_data target)
  set(library $<TARGET_FILE:${target}>)
  set(debug_folder $<TARGET_FILE_DIR:${target}>/.debug)
  set(debug_file ${debug_folder}/$<TARGET_FILE_NAME:${target}>.debug)
  target_link_options(${target} PRIVATE -Wl,--build-id=sha1)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${debug_folder}
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug --compress-debug-sections ${library} ${debug_file}
    COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=${debug_file} ${library}
    VERBATIM)
  if(TESSEL_INSTALL)
    install(FILES ${debug_file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/.debug COMPONENT Tessel_dbg)
  endif()
endfunction()

# Installs these headers of the current folder; no others are installed.
function(tessel_public_headers target)
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${ARGN})
endfunction()

# Writes the file for pkg-config. Its name is that of the target in lower case, with the prefix "tessel-" unless it is
# Tessel itself.
function(tessel_pkg_config target description)
  string(TOLOWER tessel-${target} name)
  string(REPLACE tessel-tessel tessel name ${name})
  # The installed files may be moved as a whole, so the prefix is relative to the file itself.
  file(RELATIVE_PATH prefix_from_file /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  string(REGEX REPLACE "/$" "" prefix_from_file ${prefix_from_file})
  configure_file(cmake/pkg-config.pc.in ${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Tessel_dev)
endfunction()

# Installs the targets: the component Tessel_runtime is what programs need to run, Tessel_dev what is needed to build
# them.
function(tessel_install)
  install(TARGETS ${ARGN} EXPORT TesselTargets
    LIBRARY COMPONENT Tessel_runtime NAMELINK_COMPONENT Tessel_dev
    ARCHIVE COMPONENT Tessel_dev
    # Programs that only libraries start.
    RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/tessel COMPONENT Tessel_dev
    FILE_SET HEADERS COMPONENT Tessel_dev)
  install(EXPORT TesselTargets NAMESPACE Tessel:: DESTINATION ${TESSEL_PACKAGE_DIR} COMPONENT Tessel_dev)

  set(TESSEL_COMPONENTS Tessel PatternMatcher Kit)
  configure_package_config_file(cmake/TesselConfig.cmake.in TesselConfig.cmake
    INSTALL_DESTINATION ${TESSEL_PACKAGE_DIR}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
  write_basic_package_version_file(TesselConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES
    ${PROJECT_BINARY_DIR}/TesselConfig.cmake ${PROJECT_BINARY_DIR}/TesselConfigVersion.cmake
    DESTINATION ${TESSEL_PACKAGE_DIR} COMPONENT Tessel_dev)

  tessel_pkg_config(Tessel "General application class library")
  tessel_pkg_config(PatternMatcher "Regular expressions in linear time")
endfunction()
