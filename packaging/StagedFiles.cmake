# CPack runs this on the files that go into a package. They get one time, and folders the usual modes, so that a
# package does not tell when it was made and by whom; those of Debian's package the places and forms that Debian
# wants.
if(CPACK_GENERATOR STREQUAL "DEB")
  file(GLOB_RECURSE pages ${CPACK_TEMPORARY_DIRECTORY}/*.1)
  foreach(page ${pages})
    execute_process(COMMAND gzip -9n ${page} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  file(GLOB_RECURSE completions ${CPACK_TEMPORARY_DIRECTORY}/_kovalune)
  foreach(completion ${completions})
    get_filename_component(folder ${completion} DIRECTORY)
    file(RENAME ${folder} ${folder}/../vendor-completions)
  endforeach()
  file(GLOB users ${CPACK_TEMPORARY_DIRECTORY}/*/usr)
  foreach(folder ${users})
    file(RENAME ${folder}/lib ${folder}/of-this-architecture)
    file(MAKE_DIRECTORY ${folder}/lib)
    file(RENAME ${folder}/of-this-architecture ${folder}/lib/${CPACK_KOVALUNE_ARCHITECTURE})
    # Where frei0r hosts look there is no folder for the architecture. CPack would take a file there for a library of the system,
    # and have each installation look through all of them.
    set(plugin ${CPACK_KOVALUNE_ARCHITECTURE}/frei0r-1/kovalune.so)
    if(EXISTS ${folder}/lib/${plugin})
      file(MAKE_DIRECTORY ${folder}/lib/frei0r-1)
      file(CREATE_LINK ../${plugin} ${folder}/lib/frei0r-1/kovalune.so SYMBOLIC)
    endif()
  endforeach()
endif()

if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  set(ENV{SOURCE_DATE_EPOCH} 946684800) # the year 2000
endif()
execute_process(COMMAND chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
  COMMAND_ERROR_IS_FATAL ANY)
