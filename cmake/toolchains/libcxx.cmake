# clang++ with its own standard library. Where that cannot be installed beside other packages, its files may be in the
# folder TESSEL_LIBCXX; tools/platforms.sh puts them there.

set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER clang)
set(TESSEL_LIBCXX ${CMAKE_CURRENT_LIST_DIR}/../../build/packages CACHE PATH "Folder with the files of libc++")
set(folder ${TESSEL_LIBCXX}/usr/lib/llvm-14)
if(EXISTS ${folder}/include/c++/v1)
  set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${folder}/include/c++/v1")
  set(link "-stdlib=libc++ -L${folder}/lib")
else()
  set(CMAKE_CXX_FLAGS_INIT "-stdlib=libc++")
  set(link "")
endif()
foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "${link}")
endforeach()
