# Installs the component for developers and builds and runs the project in consumer/ with it alone.
#   cmake -DBUILD=... -DSOURCE=... -DSCRATCH=... -DVERSION=... -DGENERATOR=... -DCOMPILER=... -P UseInstalled.cmake
file(REMOVE_RECURSE ${SCRATCH})
foreach(command
    "--install;${BUILD};--prefix;${SCRATCH}/a prefix;--component;development"
    "-S;${SOURCE};-B;${SCRATCH}/build;-G;${GENERATOR};-DCMAKE_CXX_COMPILER=${COMPILER};-DWANTED_VERSION=${VERSION};-DCMAKE_PREFIX_PATH=${SCRATCH}/a prefix"
    "--build;${SCRATCH}/build")
  execute_process(COMMAND ${CMAKE_COMMAND} ${command} RESULT_VARIABLE code OUTPUT_VARIABLE text ERROR_VARIABLE text)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "cmake ${command} ended with ${code}:\n${text}")
  endif()
endforeach()
execute_process(COMMAND ${SCRATCH}/build/consumer RESULT_VARIABLE code)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "the program that uses the installed library ended with ${code}")
endif()

# A later major version may break its users.
execute_process(
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${SCRATCH}/other -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
          -DWANTED_VERSION=99.0 "-DCMAKE_PREFIX_PATH=${SCRATCH}/a prefix"
  RESULT_VARIABLE code OUTPUT_QUIET ERROR_VARIABLE text)
if(code EQUAL 0 OR NOT text MATCHES "Kovalune")
  message(FATAL_ERROR "version 99.0 was found: ${text}")
endif()

# Whoever looks for the libraries in the build folder is to find them once.
file(REMOVE_RECURSE ${SCRATCH})
