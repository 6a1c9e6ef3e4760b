# Compiles and links the C++ of the folder that includes this, on Windows, with the compiler's other thread model: the
# system's own threads in place of POSIX ones. What ships then needs no function that is younger than Windows XP for 32 bits
# and Vista for 64; the few handles that this model leaves are closed by effect/frame/windows/RuntimeHandles.cpp. Objects
# of both models may stand in one program: they share everything but std::thread and std::mutex, which the effect does not
# use there.
if(WIN32)
  if(NOT KOVALUNE_SHIPPED_CXX_COMPILER)
    message(FATAL_ERROR "KOVALUNE_SHIPPED_CXX_COMPILER is empty; the toolchain file names the compiler without POSIX threads")
  endif()
  find_program(KOVALUNE_SHIPPED_CXX ${KOVALUNE_SHIPPED_CXX_COMPILER} REQUIRED
    DOC "Compiler of the files that ship")
  foreach(rule CMAKE_CXX_COMPILE_OBJECT CMAKE_CXX_CREATE_SHARED_LIBRARY)
    string(REPLACE "<CMAKE_CXX_COMPILER>" "${KOVALUNE_SHIPPED_CXX}" ${rule} "${${rule}}")
  endforeach()
endif()
