# Linux on a 64-bit Arm processor, by g++ from another system. Programs run in an emulator, if it is installed.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++-12)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc-12)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(TESSEL_EMULATOR qemu-aarch64)
mark_as_advanced(TESSEL_EMULATOR)
if(TESSEL_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TESSEL_EMULATOR} -L /usr/aarch64-linux-gnu)
endif()
