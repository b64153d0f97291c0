# Copies the project in template/, lets its own script build and test it with an installed Tessel, and starts what it
# installs:
#
#   cmake -DTESSEL_SOURCE=... -DTESSEL_BUILD=... -DWORK=... -P template.cmake

file(REMOVE_RECURSE ${WORK})
file(COPY ${TESSEL_SOURCE}/template/ DESTINATION ${WORK}/project)
set(ENV{CMAKE_PREFIX_PATH} ${WORK}/prefix)
foreach(command IN ITEMS
    "${CMAKE_COMMAND};--install;${TESSEL_BUILD};--prefix;${WORK}/prefix"
    "${WORK}/project/ci.sh"
    "${CMAKE_COMMAND};--install;${WORK}/project/build/release;--prefix;${WORK}/user")
  execute_process(COMMAND ${command} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

execute_process(COMMAND ${WORK}/user/bin/ticker 1 WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
if(NOT output STREQUAL "tick 1\n")
  message(FATAL_ERROR "The installed program prints '${output}'.")
endif()
