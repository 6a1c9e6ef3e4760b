# As CMAKE_PROJECT_INCLUDE: the project stops where it asks for a package. Threads are the compiler's own.
macro(find_package name)
  if(NOT "${name}" STREQUAL "Threads")
    message(FATAL_ERROR "this build asks for the package ${name}")
  endif()
  _find_package(${ARGV})
endmacro()
