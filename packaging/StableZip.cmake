# CPack runs this on a finished package. Its zips tell who made them, in which zone and in which order a folder had its files:
# they are packed anew without that, where the programs for it are there.
if(NOT CPACK_GENERATOR STREQUAL "ZIP")
  return()
endif()
find_program(zip zip)
if(NOT zip)
  message(WARNING "zip is not installed: whoever packs the same files will get another zip")
  return()
endif()

set(folder ${CPACK_TEMPORARY_DIRECTORY}-again)
foreach(archive ${CPACK_PACKAGE_FILES})
  file(REMOVE_RECURSE ${folder})
  file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${folder})
  file(GLOB_RECURSE names LIST_DIRECTORIES true RELATIVE ${folder} ${folder}/*)
  list(SORT names)
  list(JOIN names "\n" lines)
  file(WRITE ${folder}.names "${lines}\n")
  file(REMOVE ${archive})
  execute_process(COMMAND chmod -R u=rwX,go=rX ${folder} COMMAND_ERROR_IS_FATAL ANY)
  execute_process(
    COMMAND find ${folder} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env TZ=UTC ${zip} -qX ${archive} -@
    INPUT_FILE ${folder}.names
    WORKING_DIRECTORY ${folder}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
