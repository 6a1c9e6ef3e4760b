# Adds the resources of the plug-in for Windows to a target.
#   kovalune_add_resources(target)
# The property list and the dialog's picture come from small programs that this machine compiles and runs: the list holds
# the constants of the code, and the picture is its own source. The resource compiler then takes them as they are.
enable_language(RC)
find_program(KOVALUNE_BUILD_COMPILER NAMES c++ g++ clang++ REQUIRED
  DOC "Compiler of programs that run during the build")

# Compiles sources of effect/resources/ (their names without .cpp) into a program for this machine.
function(kovalune_build_program program)
  set(objects)
  foreach(source ${ARGN})
    set(object ${CMAKE_CURRENT_BINARY_DIR}/build-${source}.o)
    add_custom_command(OUTPUT ${object}
      COMMAND ${KOVALUNE_BUILD_COMPILER} -std=c++20 -I${PROJECT_SOURCE_DIR} -MMD -MF ${object}.d
              -c ${PROJECT_SOURCE_DIR}/effect/resources/${source}.cpp -o ${object}
      DEPENDS ${PROJECT_SOURCE_DIR}/effect/resources/${source}.cpp
      DEPFILE ${object}.d
      VERBATIM)
    list(APPEND objects ${object})
  endforeach()
  add_custom_command(OUTPUT ${program}
    COMMAND ${KOVALUNE_BUILD_COMPILER} ${objects} -o ${program}
    DEPENDS ${objects}
    VERBATIM)
endfunction()

function(kovalune_add_resources target)
  set(folder ${PROJECT_SOURCE_DIR}/effect/resources)
  set(make_list ${CMAKE_CURRENT_BINARY_DIR}/make-pipl)
  set(make_picture ${CMAKE_CURRENT_BINARY_DIR}/make-dialog-picture)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/Kovalune.pipl)
  set(picture ${CMAKE_CURRENT_BINARY_DIR}/OptionDialog.bmp)
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")

  kovalune_build_program(${make_list} MakePipl Pipl)
  add_custom_command(OUTPUT ${list}
    COMMAND ${make_list} ${bits} ${list}
    DEPENDS ${make_list}
    VERBATIM)
  kovalune_build_program(${make_picture} MakeDialogPicture DialogPicture)
  add_custom_command(OUTPUT ${picture}
    COMMAND ${make_picture} ${picture}
    DEPENDS ${make_picture}
    VERBATIM)

  target_sources(${target} PRIVATE ${folder}/Kovalune.rc)
  set_source_files_properties(${folder}/Kovalune.rc PROPERTIES
    OBJECT_DEPENDS "${list};${picture};${folder}/OptionDialog.rc"
    INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR})
endfunction()
