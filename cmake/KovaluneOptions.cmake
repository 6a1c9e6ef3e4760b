# What is built. The plug-in alone (KOVALUNE_CLI=OFF, no tests) needs a compiler and CMake, nothing else.
#   KOVALUNE_CLI     the command, on POSIX systems
#   KOVALUNE_TIFF    its TIFF files, which take libtiff
#   KOVALUNE_EXR     its OpenEXR files, which take OpenEXR
#   KOVALUNE_WEBP    reading WebP files, which takes libwebp
#   KOVALUNE_JPEG    reading JPEG files, which takes libjpeg
#   KOVALUNE_FREI0R  the plug-in for frei0r hosts, on POSIX systems
#   KOVALUNE_OPENFX  the plug-in for OpenFX hosts, on systems of 64 bits
#   KOVALUNE_WEB_THREADS  for a page, with threads, which browsers allow to isolated pages alone
#   KOVALUNE_BENCH   the benchmarks, which need all of the command
#   KOVALUNE_RIVALS  one more benchmark, beside OpenCV, which nothing else needs
#   BUILD_TESTING    the tests (of CTest), which need all of the command wherever there is one
#   KOVALUNE_TEST_LONG  what takes too long for every change: with the address sanitizer the tests of the command
#                    too, for 64-bit Windows those that are much the same on 32-bit Windows
#   KOVALUNE_FUZZ    with the address sanitizer, fuzz targets are guided by the branches of all code. For scripts/fuzz
#   KOVALUNE_MEMCHECK  the reference host tells valgrind that the memory that it hands out has not been written; needs valgrind's
#                    header. For scripts/memcheck
if(NOT WIN32 AND NOT EMSCRIPTEN)
  option(KOVALUNE_CLI "Build the command" ON)
elseif(KOVALUNE_CLI)
  message(FATAL_ERROR "KOVALUNE_CLI=ON: the command is for POSIX systems, not for ${CMAKE_SYSTEM_NAME}")
endif()
if(NOT WIN32 AND NOT EMSCRIPTEN)
  option(KOVALUNE_FREI0R "Build the plug-in for frei0r hosts" ON)
elseif(KOVALUNE_FREI0R)
  message(FATAL_ERROR "KOVALUNE_FREI0R=ON: the plug-in for frei0r hosts is for POSIX systems, not for ${CMAKE_SYSTEM_NAME}")
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  option(KOVALUNE_OPENFX "Build the plug-in for OpenFX hosts" ON)
elseif(KOVALUNE_OPENFX)
  message(FATAL_ERROR "KOVALUNE_OPENFX=ON: the plug-in for OpenFX hosts is for systems of 64 bits")
endif()
if(EMSCRIPTEN)
  option(KOVALUNE_WEB_THREADS "For a page, with threads" OFF)
endif()
option(KOVALUNE_TIFF "Read and write TIFF files" ON)
option(KOVALUNE_EXR "Read and write OpenEXR files" ON)
option(KOVALUNE_WEBP "Read WebP files" ON)
option(KOVALUNE_JPEG "Read JPEG files" ON)
option(KOVALUNE_BENCH "Build the benchmarks" OFF)
option(KOVALUNE_TEST_LONG "Test what takes too long for every change too" OFF)
option(KOVALUNE_MEMCHECK "Let valgrind see who reads the host's memory unwritten" OFF)
option(KOVALUNE_FUZZ "With the address sanitizer, let fuzz targets watch every branch" OFF)
option(KOVALUNE_RIVALS "With the benchmarks, one beside OpenCV" OFF)

# Stops where the user asked for `what` and the options that it needs are off.
function(kovalune_require what)
  foreach(option ${ARGN})
    if(NOT ${option})
      message(FATAL_ERROR "${what} needs ${option}=ON")
    endif()
  endforeach()
endfunction()

if(KOVALUNE_BENCH)
  kovalune_require("KOVALUNE_BENCH=ON" KOVALUNE_CLI KOVALUNE_OPENFX KOVALUNE_TIFF KOVALUNE_EXR)
endif()
