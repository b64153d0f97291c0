# The compiler options of every target of this project: the language, the warnings, sanitizers if wanted, and paths
# that do not depend on the folder of the build.

include_guard(GLOBAL)

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-gnu-unique TESSEL_HAS_NO_GNU_UNIQUE)
check_cxx_compiler_flag(-fno-semantic-interposition TESSEL_HAS_NO_SEMANTIC_INTERPOSITION)
check_cxx_compiler_flag(-ftls-model=initial-exec TESSEL_HAS_TLS_MODEL)

option(TESSEL_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
set(TESSEL_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

if(TESSEL_SANITIZE)
  add_compile_options(-fsanitize=${TESSEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TESSEL_SANITIZE})
endif()

# Uses ccache if it is installed, to make repeated builds short.
find_program(TESSEL_CCACHE ccache)
mark_as_advanced(TESSEL_CCACHE)
if(TESSEL_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${TESSEL_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TESSEL_CCACHE})
endif()

# Copies the runtime libraries beside the programs. They are shared, since exceptions pass from one module to another.
if(WIN32)
  foreach(name IN ITEMS libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
      OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(IS_ABSOLUTE ${file})
      file(COPY ${file} DESTINATION ${CMAKE_BINARY_DIR}/bin)
    endif()
  endforeach()
endif()

# Options of the target alone; users of the library do not get them.
function(tessel_compile_options target)
  set(folder ${CMAKE_BINARY_DIR})
  if(CMAKE_GENERATOR MATCHES "Makefiles")
    set(folder ${CMAKE_CURRENT_BINARY_DIR})
  endif()
  cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${folder} OUTPUT_VARIABLE source_from_folder)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wcast-align -Wformat=2 -Wno-format-nonliteral -Wextra-semi -Wundef
    # Paths as they are written here, and relative to the build folder, as a compiler cache may write them.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${source_from_folder}/=
    # The build folder itself, which is in the debug data.
    -fdebug-prefix-map=${folder}=.)
  target_compile_definitions(${target} PRIVATE TESSEL_SANITIZE="${TESSEL_SANITIZE}")
  if(UNIX AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Times after 2038, and files of more than 2 GiB.
    target_compile_definitions(${target} PRIVATE _TIME_BITS=64 _FILE_OFFSET_BITS=64)
  endif()
  # At -O3, g++ 12 warns that "text" + std::to_string(i) copies overlapping memory.
  target_compile_options(${target} PRIVATE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>,$<CONFIG:Release>>:-Wno-restrict>)
  if(TESSEL_SANITIZE)
    # With the checks that a sanitizer adds, the data flow warnings of g++ are often wrong.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  endif()
  if(TESSEL_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  # A plug-in that uses a template of the library must not define a unique symbol, which would prevent its unloading.
  if(TESSEL_HAS_NO_GNU_UNIQUE)
    target_compile_options(${target} PUBLIC
      $<BUILD_INTERFACE:-fno-gnu-unique> $<INSTALL_INTERFACE:$<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>>)
  endif()
endfunction()
