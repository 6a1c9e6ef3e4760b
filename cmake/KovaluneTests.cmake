# How test programs are run by CTest.
#
#   kovalune_add_tests(PROGRAM [EACH] [SLOW] [WINE | WINE32 | WINE_LONG] [JAPANESE] [SETS PLAIN|ALL] [TIMEOUT SECONDS] [ENVIRONMENT NAME=VALUE...])
#
# A program's tests share a few processes, PROGRAM.1 to PROGRAM.4, since starting one for each test takes longer than most of
# them, above all under a sanitizer. What each test did is in results/PROGRAM.N.xml of the build folder.
#
#   EACH   a process for each test: for programs whose tests change what stays with a process
#   SLOW   the label "slow" beside that of the room
#   WINE   says something of Windows: the target wine_tests builds it for Windows, and the presets win32 and win64 run it. No
#          more programs than these are built there: each costs time
#   WINE32 as WINE, but of 64-bit Windows with KOVALUNE_TEST_LONG alone: what a width changes is tested without Wine
#   WINE_LONG  as WINE with KOVALUNE_TEST_LONG alone: whole frames of the finished files go the same ways
#   SETS   runs once more, as PROGRAM.SET.N, with the plain kernels, or with those of each instruction set that this machine has
#          beside the one in use; under the address sanitizer and Wine with the plain ones alone. Without KOVALUNE_TEST_LONG slow
#          programs run once on each width of Windows: on 32 bits with the set in use, on 64 with the plain one. To the thread
#          sanitizer all sets are alike
#   JAPANESE   under Wine, on a Japanese system: with names in code page 932, of which a byte may look like '\'
#
# Every test bears the name of its room, a folder of tests/, as a label.
include(GoogleTest)

# Under Wine, where one runs after the other, each would only be one more start.
set(processes 4)
if(WIN32)
  set(processes 1)
endif()
set(KOVALUNE_TEST_PROCESSES ${processes} CACHE STRING "The processes that a test program's tests are dealt out to")

function(kovalune_add_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "EACH;SLOW;WINE;WINE32;WINE_LONG;JAPANESE" "TIMEOUT;SETS" "ENVIRONMENT")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "kovalune_add_tests(${program}) does not know ${arg_UNPARSED_ARGUMENTS}")
  endif()
  file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
  string(REGEX REPLACE "/.*" "" room ${room})
  set(labels ${room})
  if(arg_SLOW)
    list(APPEND labels slow)
  endif()
  if(arg_WINE_LONG AND KOVALUNE_TEST_LONG OR arg_WINE32 AND (KOVALUNE_TEST_LONG OR CMAKE_SIZEOF_VOID_P EQUAL 4))
    set(arg_WINE TRUE)
  endif()
  if(WIN32 AND arg_WINE)
    list(APPEND labels wine)
    add_dependencies(wine_tests ${program})
    if(arg_JAPANESE)
      list(APPEND arg_ENVIRONMENT KOVALUNE_WINE_LOCALE=ja_JP.UTF-8)
    endif()
  endif()
  # All programs under one Wine have the same user.
  set(lock)
  if(WIN32)
    set(lock RESOURCE_LOCK windows-user)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 900)
  endif()
  if(arg_EACH)
    # A list does not get through the discovery: one label, one variable. Windows has no use for the others.
    list(GET labels -1 labels)
    if(arg_ENVIRONMENT)
      list(GET arg_ENVIRONMENT -1 arg_ENVIRONMENT)
    endif()
    gtest_discover_tests(${program} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 240 PROPERTIES
      LABELS "${labels}" ${lock} TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "${arg_ENVIRONMENT}")
    set_target_properties(${program} PROPERTIES KOVALUNE_EACH " each")
    return()
  endif()
  # Under Wine programs run in the build folder, and no absolute path of this system is one there.
  set(results results)
  if(NOT WIN32)
    set(results ${PROJECT_BINARY_DIR}/results)
  endif()
  math(EXPR last "${KOVALUNE_TEST_PROCESSES} - 1")
  set(sets in_use)
  if(arg_SETS)
    target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/ChosenSet.cpp)
    if(WIN32 AND arg_SLOW AND NOT KOVALUNE_TEST_LONG)
      if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(sets plain)
      endif()
    elseif(NOT KOVALUNE_SANITIZE STREQUAL "thread")
      list(APPEND sets plain)
    endif()
    if(arg_SETS STREQUAL "ALL" AND NOT WIN32 AND NOT KOVALUNE_SANITIZE)
      list(APPEND sets sse2 avx2 avx512)
    endif()
  endif()
  foreach(instructions ${sets})
    foreach(shard RANGE ${last})
      math(EXPR number "${shard} + 1")
      set(name ${program}.${number})
      set(environment GTEST_TOTAL_SHARDS=${KOVALUNE_TEST_PROCESSES} GTEST_SHARD_INDEX=${shard} ${arg_ENVIRONMENT})
      if(NOT instructions STREQUAL "in_use")
        set(name ${program}.${instructions}.${number})
        list(APPEND environment KOVALUNE_TEST_SET=${instructions})
      endif()
      add_test(NAME ${name} COMMAND ${program} --gtest_brief=1
        --gtest_output=xml:${results}/${name}.xml)
      set_tests_properties(${name} PROPERTIES LABELS "${labels}" ${lock} TIMEOUT ${arg_TIMEOUT} SKIP_RETURN_CODE 77
        ENVIRONMENT "${environment}")
    endforeach()
  endforeach()
endfunction()

# What test programs include most, compiled once for all of them: most of a test file's time is that of the test library's and
# the standard library's headers.
function(kovalune_share_headers programs)
  add_executable(test_headers EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/tests/support/TestHeaders.cpp)
  target_link_libraries(test_headers PRIVATE kovalune_common GTest::gtest)
  target_precompile_headers(test_headers PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/TestHeaders.h)
  foreach(program ${programs})
    get_target_property(libraries ${program} LINK_LIBRARIES)
    get_target_property(sources ${program} SOURCES)
    list(LENGTH sources files)
    if(libraries MATCHES "GTest::" AND files GREATER 1)
      target_precompile_headers(${program} REUSE_FROM test_headers)
    endif()
  endforeach()
endfunction()

# Templates and inline functions of the effect that a test file uses are compiled into the test too, with the test's flags, and
# the linker keeps the copy that it meets first. This lets it meet the effect's own objects before the test's, so that what is
# tested is what ships.
function(kovalune_link_effect_first programs)
  foreach(program ${programs})
    get_target_property(libraries ${program} LINK_LIBRARIES)
    if(libraries MATCHES "kovalune_effect|kovalune_test_support|kovalune_selfcheck")
      target_link_options(${program} PRIVATE
        "SHELL:LINKER:--whole-archive $<TARGET_FILE:kovalune_effect> LINKER:--no-whole-archive")
    endif()
  endforeach()
endfunction()
