# The floors of the library. Each file is on one floor and includes only files of that floor and of those below it,
# so a floor can be read, tested and changed without those above.

include_guard(GLOBAL)

# Adds files of the current folder and its subfolders to a floor of Tessel. A new floor is put on top of the others.
# The headers before PRIVATE are installed, those after it are not. TARGET is the target that is built from the
# files, by default Tessel.
function(tessel_floor floor)
  cmake_parse_arguments(PARSE_ARGV 1 given "" TARGET PRIVATE)
  if(NOT given_TARGET)
    set(given_TARGET Tessel)
  endif()
  list(TRANSFORM given_UNPARSED_ARGUMENTS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE public)
  list(TRANSFORM given_PRIVATE PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE private)
  set(files ${public} ${private})
  list(FILTER public INCLUDE REGEX "\\.h$")

  target_sources(${given_TARGET} PRIVATE ${files})
  if(public)
    tessel_public_headers(${given_TARGET} ${public})
  endif()

  get_property(floors GLOBAL PROPERTY tessel_floors)
  if(NOT floor IN_LIST floors)
    set_property(GLOBAL APPEND PROPERTY tessel_floors ${floor})
  endif()
  set_property(GLOBAL APPEND PROPERTY tessel_floor_files ${files})
  set_property(GLOBAL APPEND PROPERTY tessel_floor_public ${public})
  foreach(file IN LISTS files)
    set_property(GLOBAL PROPERTY tessel_floor_of_${file} ${floor})
  endforeach()
endfunction()

# Allows a file to include headers of a higher floor. An exception that is not needed is an error.
function(tessel_floor_exception file)
  list(TRANSFORM ARGN PREPEND "${file} " OUTPUT_VARIABLE pairs)
  set_property(GLOBAL APPEND PROPERTY tessel_floor_exceptions ${pairs})
endfunction()

# The file and line of an include line, in the form of a compiler's message.
function(tessel_get_place file line result)
  file(READ ${file} text)
  string(FIND "${text}" "${line}" position)
  string(SUBSTRING "${text}" 0 ${position} before)
  string(REGEX REPLACE "[^\n]" "" before "${before}")
  string(LENGTH "${before}" number)
  math(EXPR number "${number} + 1")
  cmake_path(RELATIVE_PATH file BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
  set(${result} ${file}:${number} PARENT_SCOPE)
endfunction()

# The file of the library that an include line names, in the folder of the including file or below src/; empty for a
# header of the standard library.
function(tessel_find_included file line result)
  string(REGEX MATCH "[<\"]([^>\"]+)[>\"]" name "${line}")
  cmake_path(GET file PARENT_PATH folder)
  foreach(base IN ITEMS ${folder} ${PROJECT_SOURCE_DIR}/src)
    cmake_path(ABSOLUTE_PATH CMAKE_MATCH_1 BASE_DIRECTORY ${base} NORMALIZE OUTPUT_VARIABLE included)
    get_property(known GLOBAL PROPERTY tessel_floor_of_${included} SET)
    if(known)
      set(${result} ${included} PARENT_SCOPE)
      return()
    endif()
  endforeach()
  set(${result} "" PARENT_SCOPE)
endfunction()

# Stops if a file breaks the rules of the floors or is on no floor. Call it after the last floor. After a change of
# any of the files, the next build configures, and so checks, again.
function(tessel_check_floors)
  get_property(floors GLOBAL PROPERTY tessel_floors)
  get_property(files GLOBAL PROPERTY tessel_floor_files)
  get_property(public GLOBAL PROPERTY tessel_floor_public)
  get_property(exceptions GLOBAL PROPERTY tessel_floor_exceptions)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${files})
  set(faults "")

  foreach(file IN LISTS files)
    get_property(floor GLOBAL PROPERTY tessel_floor_of_${file})
    list(FIND floors ${floor} level)
    cmake_path(GET file FILENAME name)
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS lines)
      tessel_find_included(${file} "${line}" included)
      if(NOT included)
        continue()
      endif()

      get_property(included_floor GLOBAL PROPERTY tessel_floor_of_${included})
      list(FIND floors ${included_floor} included_level)
      cmake_path(GET included FILENAME included_name)
      if(included_level GREATER level)
        if("${name} ${included_name}" IN_LIST exceptions)
          list(REMOVE_ITEM exceptions "${name} ${included_name}")
        else()
          tessel_get_place(${file} "${line}" place)
          string(APPEND faults "\n ${place}: "
            "A file of the floor \"${floor}\" includes ${included_name} of the higher floor \"${included_floor}\".")
        endif()
      endif()
      if(file IN_LIST public AND NOT included IN_LIST public)
        tessel_get_place(${file} "${line}" place)
        string(APPEND faults "\n ${place}: A public header includes ${included_name}, which is private.")
      endif()
    endforeach()
  endforeach()

  foreach(exception IN LISTS exceptions)
    string(APPEND faults "\n The exception for \"${exception}\" is not needed.")
  endforeach()

  list(TRANSFORM files REPLACE "/[^/]*$" "" OUTPUT_VARIABLE folders)
  list(REMOVE_DUPLICATES folders)
  list(TRANSFORM folders APPEND "/*.h" OUTPUT_VARIABLE headers)
  list(TRANSFORM folders APPEND "/*.cpp" OUTPUT_VARIABLE sources)
  file(GLOB strangers CONFIGURE_DEPENDS ${headers} ${sources})
  list(REMOVE_ITEM strangers ${files})
  foreach(stranger IN LISTS strangers)
    cmake_path(RELATIVE_PATH stranger BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
    string(APPEND faults "\n ${stranger} is on no floor.")
  endforeach()

  if(faults)
    message(FATAL_ERROR "The floors of the library are not in order:${faults}")
  endif()
endfunction()
