# Adds the resources of the plug-in for Windows to a target.
#   kovalune_add_resources(target)
# The property list comes from a small program that this machine compiles and runs, so that it holds the constants of
# the code; the resource compiler then takes it as it is.
enable_language(RC)
find_program(KOVALUNE_BUILD_COMPILER NAMES c++ g++ clang++ REQUIRED
  DOC "Compiler of programs that run during the build")

function(kovalune_add_resources target)
  set(folder ${PROJECT_SOURCE_DIR}/effect/resources)
  set(program ${CMAKE_CURRENT_BINARY_DIR}/make-pipl)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/Kovalune.pipl)
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")

  set(objects)
  foreach(source MakePipl Pipl)
    set(object ${CMAKE_CURRENT_BINARY_DIR}/build-${source}.o)
    add_custom_command(OUTPUT ${object}
      COMMAND ${KOVALUNE_BUILD_COMPILER} -std=c++20 -I${PROJECT_SOURCE_DIR} -MMD -MF ${object}.d
              -c ${folder}/${source}.cpp -o ${object}
      DEPENDS ${folder}/${source}.cpp
      DEPFILE ${object}.d
      VERBATIM)
    list(APPEND objects ${object})
  endforeach()
  add_custom_command(OUTPUT ${program}
    COMMAND ${KOVALUNE_BUILD_COMPILER} ${objects} -o ${program}
    DEPENDS ${objects}
    VERBATIM)
  add_custom_command(OUTPUT ${list}
    COMMAND ${program} ${bits} ${list}
    DEPENDS ${program}
    VERBATIM)

  target_sources(${target} PRIVATE ${folder}/Kovalune.rc)
  set_source_files_properties(${folder}/Kovalune.rc PROPERTIES
    OBJECT_DEPENDS ${list}
    INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
