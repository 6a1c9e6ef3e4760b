add_executable(openfx_tests
  openfx/DescribeTest.cpp
  openfx/GoldenScenesTest.cpp
  openfx/HostFailureTest.cpp
  openfx/IdentityTest.cpp
  openfx/InstanceTest.cpp
  openfx/LifeTest.cpp
  openfx/NamesTest.cpp
  openfx/PixelPassesTest.cpp
  openfx/PropertyBag.cpp
  openfx/Reference.cpp
  openfx/RenderPlaceTest.cpp
  openfx/RenderValuesTest.cpp
  openfx/SampleOrderTest.cpp
  openfx/TestHost.cpp
  openfx/TestPicture.cpp)
target_link_libraries(openfx_tests PRIVATE kovalune_openfx kovalune_selfcheck GTest::gtest_main)
target_compile_definitions(openfx_tests PRIVATE KOVALUNE_OFX="$<TARGET_FILE:KovaluneOfx>")
add_dependencies(openfx_tests KovaluneOfx)
kovalune_add_tests(openfx_tests WINE)

if(TARGET kovalune_pictures AND NOT KOVALUNE_SANITIZE)
  # What `kovalune render` makes of the same pixels, by its own library, and the finished file.
  add_executable(openfx_file_tests
    openfx/BundleFileTest.cpp
    openfx/PictureTest.cpp
    openfx/PropertyBag.cpp
    openfx/Reference.cpp
    openfx/TestHost.cpp
    openfx/TestPicture.cpp)
  target_link_libraries(openfx_file_tests PRIVATE kovalune_openfx kovalune_pictures GTest::gtest_main)
  target_compile_definitions(openfx_file_tests PRIVATE
    KOVALUNE_OFX="$<TARGET_FILE:KovaluneOfx>"
    KOVALUNE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  add_dependencies(openfx_file_tests KovaluneOfx)
  kovalune_add_tests(openfx_file_tests)
endif()
