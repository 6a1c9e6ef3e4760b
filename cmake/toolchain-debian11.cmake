# For every Linux of these years: headers and libraries of a small Debian 11, which scripts/lib/old-debian.sh makes and names in the
# environment, and the machine's own Clang 16. What it makes needs that C library and nothing else: all other libraries are static
# there, the language's runtime too.
if(NOT DEFINED ENV{KOVALUNE_DEBIAN11})
  message(FATAL_ERROR "KOVALUNE_DEBIAN11 names no folder; scripts/package makes one and sets it")
endif()
set(CMAKE_SYSROOT $ENV{KOVALUNE_DEBIAN11})
set(CMAKE_C_COMPILER clang-16)
set(CMAKE_CXX_COMPILER clang++-16)
set(CMAKE_LIBRARY_ARCHITECTURE x86_64-linux-gnu)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static-libstdc++ -static-libgcc")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libstdc++ -static-libgcc -Wl,--exclude-libs,ALL")
# What libtiff.a needs: a static library does not say it.
set(CMAKE_CXX_STANDARD_LIBRARIES
  "-Wl,-Bstatic -lwebp -ljpeg -ljbig -llzma -ldeflate -lzstd -lz -Wl,-Bdynamic")
