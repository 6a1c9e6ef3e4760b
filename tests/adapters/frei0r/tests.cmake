# To the thread sanitizer no other test has several threads.
add_executable(frei0r_tests frei0r/TestHost.cpp frei0r/ThreadsTest.cpp)
if(NOT KOVALUNE_SANITIZE STREQUAL "thread")
  target_sources(frei0r_tests PRIVATE
    frei0r/PluginFileTest.cpp
    frei0r/FrameTest.cpp
    frei0r/HostHabitsTest.cpp
    frei0r/KdenliveTest.cpp
    frei0r/LoadTest.cpp
    frei0r/SettingsFileTest.cpp
    frei0r/TableTest.cpp
    frei0r/ValuesTest.cpp
    ../support/TestFolder.cpp)
endif()
target_link_libraries(frei0r_tests PRIVATE kovalune_selfcheck GTest::gtest_main ${CMAKE_DL_LIBS})
target_compile_definitions(frei0r_tests PRIVATE
  KOVALUNE_BUILD_FOLDER="${PROJECT_BINARY_DIR}"
  KOVALUNE_CMAKE="${CMAKE_COMMAND}"
  KOVALUNE_EXAMPLES="${PROJECT_SOURCE_DIR}/examples"
  KOVALUNE_FREI0R_FILE="$<TARGET_FILE:kovalune_frei0r>"
  KOVALUNE_KDENLIVE_FILE="${PROJECT_SOURCE_DIR}/packaging/kdenlive/frei0r_kovalune.xml")
add_dependencies(frei0r_tests kovalune_frei0r)
kovalune_add_tests(frei0r_tests)

if(TARGET kovalune_cli AND NOT KOVALUNE_SANITIZE)
  add_executable(frei0r_ffmpeg_tests frei0r/FfmpegTest.cpp ../support/TestFolder.cpp)
  target_link_libraries(frei0r_ffmpeg_tests PRIVATE kovalune_common GTest::gtest_main)
  target_compile_definitions(frei0r_ffmpeg_tests PRIVATE
    KOVALUNE_COMMAND="$<TARGET_FILE:kovalune_cli>"
    KOVALUNE_EXAMPLES="${PROJECT_SOURCE_DIR}/examples"
    KOVALUNE_FREI0R_FILE="$<TARGET_FILE:kovalune_frei0r>")
  add_dependencies(frei0r_ffmpeg_tests kovalune_cli kovalune_frei0r)
  kovalune_add_tests(frei0r_ffmpeg_tests)
endif()
