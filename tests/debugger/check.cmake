# Installs the library, builds the probe with it, and lets gdb show each of its objects:
#
#   cmake -DTESSEL_BUILD=... -DWORK=... -DGDB=... -DOPTIONS=... -P check.cmake

file(REMOVE_RECURSE ${WORK})
foreach(command IN ITEMS
    "--install;${TESSEL_BUILD};--prefix;${WORK}/prefix"
    "-S;${CMAKE_CURRENT_LIST_DIR};-B;${WORK}/build;-DCMAKE_BUILD_TYPE=Debug;-DCMAKE_PREFIX_PATH=${WORK}/prefix;${OPTIONS}"
    "--build;${WORK}/build")
  execute_process(COMMAND ${CMAKE_COMMAND} ${command} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

set(ENV{NATVIS} ${WORK}/prefix/share/tessel/tessel.natvis)
execute_process(
  COMMAND ${GDB} -nx -batch -iex "set auto-load safe-path ${WORK}/prefix" -ex "set width 0"
    -x ${CMAKE_CURRENT_LIST_DIR}/check.py ${WORK}/build/probe
  WORKING_DIRECTORY ${WORK}
  OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT output MATCHES "\nAll is shown\\.\n")
  message(FATAL_ERROR "${output}")
endif()
