# Builds and runs the program of README.md in a fresh folder, as a project of its own:
#
#   cmake -DTESSEL_FROM=... -DTESSEL_SOURCE=... -DTESSEL_BUILD=... -DWORK=... -DOPTIONS=... -P check.cmake
#
# TESSEL_FROM is the way in which the project takes the library, TESSEL_BUILD the library's build tree, or PREFIX where
# it is installed, WORK the folder, OPTIONS what the project is configured with.

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The program prints the text.
function(check_output expected)
  execute_process(COMMAND ${ARGN}
    WORKING_DIRECTORY ${WORK}
    OUTPUT_VARIABLE output
    COMMAND_ERROR_IS_FATAL ANY)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "${ARGN} printed '${output}'.")
  endif()
endfunction()

# The piece of C++ in README.md.
function(extract_program file)
  file(READ ${TESSEL_SOURCE}/README.md text)
  string(REGEX REPLACE "^.*\n```cpp\n" "" text "${text}")
  string(FIND "${text}" "```" end)
  string(SUBSTRING "${text}" 0 ${end} text)
  file(WRITE ${file} "${text}")
endfunction()

# <tessel/Tessel.h> is there for all others but the optional one and those that only public templates need, and the
# libraries' own headers are not.
function(check_headers folder)
  file(GLOB folders RELATIVE ${folder} ${folder}/*)
  if(NOT folders STREQUAL "patternmatcher;tessel;tesselkit")
    message(FATAL_ERROR "Installed are headers in ${folders}.")
  endif()

  file(GLOB headers RELATIVE ${folder} ${folder}/patternmatcher/*)
  if(NOT headers STREQUAL "patternmatcher/Export.h;patternmatcher/PatternMatcher.h")
    message(FATAL_ERROR "Installed are ${headers}.")
  endif()

  if(EXISTS ${folder}/tesselkit/MachineTree.h OR NOT EXISTS ${folder}/tesselkit/MachineCheck.h)
    message(FATAL_ERROR "Installed are others of the kit's headers.")
  endif()

  file(GLOB headers RELATIVE ${folder} ${folder}/tessel/*.h)
  list(REMOVE_ITEM headers tessel/Tessel.h tessel/FactoryTable.h tessel/ScopedLockTemplate.h
    tessel/StandardSupport.h tessel/TaskRecord.h)
  file(STRINGS ${folder}/tessel/Tessel.h included REGEX "^#include <tessel/")
  list(TRANSFORM included REPLACE "#include <(.*)>" "\\1")
  if(NOT headers STREQUAL included)
    message(FATAL_ERROR "Installed are ${headers}, but <tessel/Tessel.h> includes ${included}.")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
if(TESSEL_FROM MATCHES "find_package|pkg_config")
  # Installed to one place and used at another: nothing in the package depends on where it was put first.
  if(NOT PREFIX)
    run(${CMAKE_COMMAND} --install ${TESSEL_BUILD} --prefix ${WORK}/first)
    set(PREFIX ${WORK}/prefix)
    file(RENAME ${WORK}/first ${PREFIX})
  endif()
  list(APPEND OPTIONS -DCMAKE_PREFIX_PATH=${PREFIX})
  check_headers(${PREFIX}/include)
  file(GLOB_RECURSE libraries ${PREFIX}/lib/libTessel.so)
  cmake_path(GET libraries PARENT_PATH libraries)
endif()

extract_program(${WORK}/hello.cpp)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK}/build ${OPTIONS}
  -DTESSEL_FROM=${TESSEL_FROM} -DTESSEL_SOURCE=${TESSEL_SOURCE} -DPROGRAM=${WORK}/hello.cpp)
run(${CMAKE_COMMAND} --build ${WORK}/build)

check_output("Hello Ann\nHello Bob\n" build/hello Ann Bob)
if(NOT TESSEL_FROM STREQUAL "pkg_config")
  check_output("" build/child)
endif()

# The installed programs need nothing of the folder where they were built.
run(${CMAKE_COMMAND} --install ${WORK}/build --prefix ${WORK}/first)
file(RENAME ${WORK}/first ${WORK}/user)
file(REMOVE_RECURSE ${WORK}/build)
check_output("Hello Ann\nHello Bob\n" ${WORK}/user/bin/hello Ann Bob)
check_output("42\n" user/bin/digits)
file(READ ${TESSEL_SOURCE}/src/tessel/Version.h text)
string(REGEX MATCH "\"(([0-9]+[.][0-9]+)[.][0-9]+)\"" text "${text}")
set(version ${CMAKE_MATCH_1})
set(library_version ${CMAKE_MATCH_2})
check_output("${version}\n" user/bin/version)

if(TESSEL_FROM STREQUAL "find_package")
  foreach(library IN ITEMS Tessel PatternMatcher)
    execute_process(COMMAND objdump -p ${libraries}/lib${library}.so
      OUTPUT_VARIABLE header COMMAND_ERROR_IS_FATAL ANY)
    if(NOT header MATCHES "SONAME +lib${library}[.]so[.]${library_version}\n")
      message(FATAL_ERROR "lib${library}.so of version ${version} is named otherwise: ${header}")
    endif()
  endforeach()
endif()

# Without CMake.
if(TESSEL_FROM STREQUAL "pkg_config")
  # pkg-config escapes blanks in paths for a shell that reads its words again.
  run(sh -c "export PKG_CONFIG_PATH='${libraries}/pkgconfig'
    cd '${WORK}' && eval ${CXX} -std=c++20 hello.cpp -o plain $(pkg-config --cflags --libs tessel) \
      -Wl,-rpath,$(pkg-config --variable=libdir tessel)")
  check_output("Hello Ann\n" ./plain Ann)
endif()
