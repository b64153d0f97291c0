# Linux, 32 bit, by g++ of a system of 64 bit. Floats are computed in registers of their own size, as on 64 bit: the
# older ones of this processor would round later and so give other results. The headers of the kernel are those of 64 bit.

set(CMAKE_CXX_COMPILER g++-12)
set(CMAKE_C_COMPILER gcc-12)
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse -idirafter /usr/include/x86_64-linux-gnu")
