# Configures the library beside this file, first as it is, then with one fault at a time, and demands that each
# fault is found.

# @param result what the configuration says: nothing for success, else the fault
# @param file the file to which the text is added, if any
function(check case result file text)
  file(REMOVE_RECURSE ${WORK})
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/CMakeLists.txt ${CMAKE_CURRENT_LIST_DIR}/src DESTINATION ${WORK})
  if(file)
    file(APPEND ${WORK}/src/${file} "${text}")
  endif()

  execute_process(
    COMMAND ${CMAKE_COMMAND} -G ${GENERATOR} -S ${WORK} -B ${WORK}/build -DTESSEL_SOURCE=${TESSEL_SOURCE}
    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_VARIABLE output)
  string(FIND "${output}" " ${result}\n" position)
  if((NOT result AND NOT failed) OR (result AND failed AND NOT position EQUAL -1))
    return()
  endif()
  message(SEND_ERROR "${case}: expected \"${result}\", but configuring gave ${failed} and said:\n${output}")
endfunction()

check("in order" "" "" "")
check("a public header runs up"
  "src/house/Stairs.h:5: A file of the floor \"ground\" includes Window.h of the higher floor \"roof\"."
  house/Stairs.h "\n#include <house/Window.h>\n")
check("a private header runs up, by a relative name"
  "src/house/Pipes.h:2: A file of the floor \"ground\" includes Window.h of the higher floor \"roof\"."
  house/Pipes.h "# include \"../house/Window.h\"\n")
check("a public header includes a private one of its floor"
  "src/house/Stairs.h:4: A public header includes Pipes.h, which is private."
  house/Stairs.h "#include \"Pipes.h\"\n")
check("a file that nobody has put on a floor"
  "src/house/Attic.cpp is on no floor."
  house/Attic.cpp "int g_iAttic;\n")
check("a file of a subfolder that nobody has put on a floor"
  "src/cellar/deep/Mud.cpp is on no floor."
  cellar/deep/Mud.cpp "int g_iMud;\n")
check("a file of another target, in a subfolder, runs up"
  "src/cellar/deep/Well.cpp:2: A file of the floor \"cellar\" includes Stairs.h of the higher floor \"ground\"."
  cellar/deep/Well.cpp "#include \"house/Stairs.h\"\n")
check("a public header includes a private one of another target"
  "src/house/Stairs.h:4: A public header includes Well.h, which is private."
  house/Stairs.h "#include <cellar/Well.h>\n")
check("an exception that is not needed"
  "The exception for \"Pipes.h Window.h\" is not needed."
  house/CMakeLists.txt "tessel_floor_exception(Pipes.h Window.h)\ntessel_check_floors()\n")
