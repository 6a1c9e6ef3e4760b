# What the pixel tests share: the reference host as a running command, worlds and pictures, and plain twins of
# the passes.
include_guard(GLOBAL)

add_library(kovalune_test_support STATIC
  ${CMAKE_CURRENT_LIST_DIR}/MaskShapes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainBlur.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainBoundaryBlur.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainColorExtension.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainCorners.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainExtraction.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainFinishing.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainFlagMap.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainKernel.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PlainPicture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainPixels.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainRamps.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainRuns.cpp
  ${CMAKE_CURRENT_LIST_DIR}/../reference/PlainSmooth.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StrictHost.cpp
  ${CMAKE_CURRENT_LIST_DIR}/TestWorld.cpp)
# Plain code is slow enough as it is.
target_compile_options(kovalune_test_support PRIVATE -O1)
target_link_libraries(kovalune_test_support PUBLIC kovalune_effect kovalune_judge GTest::gtest)
