# What both Windows toolchains share: the variant of the compiler whose standard library has threads.

set(CMAKE_CXX_COMPILER ${TESSEL_MINGW}-g++-posix)
set(CMAKE_C_COMPILER ${TESSEL_MINGW}-gcc-posix)
set(CMAKE_RC_COMPILER ${TESSEL_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${TESSEL_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(TESSEL_WINE NAMES wine64 wine PATHS /usr/lib/wine)
mark_as_advanced(TESSEL_WINE)
if(TESSEL_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TESSEL_WINE})
endif()
