# Where CMAKE_UNITY_BUILD is on, as in all presets but those of daily work and clang-tidy, several files of a target are compiled
# as one: most of a file's time is that of its headers. What a file includes by itself is looked at in those two.
# kovalune_compile_alone(TARGET FILE...): each as a file of its own all the same.
function(kovalune_compile_alone target)
  if(TARGET ${target})
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE files)
    set_source_files_properties(${files} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
endfunction()

# What another program has in its own way, and the kernels, of which each file has an instruction set's flags.
kovalune_compile_alone(kovalune_effect
  effect/frame/EntryPoint.cpp
  effect/frame/sequence/SequenceData.cpp
  effect/frame/sequence/SequenceRecord.cpp
  effect/kernels/Kernels.cpp
  effect/kernels/plain/Kernels.cpp)
kovalune_compile_alone(kovalune_pictures pictures/LibraryVersions.cpp pictures/PictureFile.cpp)
# What plug-ins for other hosts do without.
kovalune_compile_alone(kovalune_render render/LoadedEffect.cpp)

# What has names of its own that other files of the target have too.
kovalune_compile_alone(kovalune_effect effect/share/AEUtil/AEWorldSuite.cpp)
kovalune_compile_alone(kovalune_pictures
  pictures/bmp/BmpFile.cpp
  pictures/bmp/BmpLibrary.cpp
  pictures/exr/ExrWrite.cpp
  pictures/jpeg/JpegRead.cpp
  pictures/webp/WebpRead.cpp)
kovalune_compile_alone(kovalune_picture_values pictures/tga/TgaFile.cpp pictures/tga/TgaHeader.cpp)
kovalune_compile_alone(kovalune_render render/SelectionNotes.cpp)
kovalune_compile_alone(kovalune_cli_parts cli/files/ColorsPicture.cpp)
kovalune_compile_alone(kovalune_test_support tests/reference/PlainBoundaryBlur.cpp tests/support/PlainPicture.cpp)
kovalune_compile_alone(platform_tests tests/platform/ProfileFileReadTest.cpp)
# GCC warns of a copy in it that cannot be.
kovalune_compile_alone(params_tests tests/params/posix/DefaultsStoreTest.cpp)
kovalune_compile_alone(smoothing_tests tests/smoothing/NubTest.cpp tests/smoothing/PatternsTest.cpp)
kovalune_compile_alone(frame_tests
  tests/frame/FirstCallTest.cpp
  tests/frame/SetUpTest.cpp
  tests/frame/SmartPreRenderTest.cpp
  tests/frame/SmartRenderTest.cpp)
kovalune_compile_alone(pipeline_tests
  tests/pipeline/CoverageTest.cpp
  tests/pipeline/FrameStageTest.cpp
  tests/pipeline/PassMemoryTest.cpp
  tests/pipeline/ProcessStageTest.cpp
  tests/pipeline/ProcessWildTest.cpp
  tests/pipeline/WorldWatch.cpp)
kovalune_compile_alone(faults_tests tests/faults/FaultScene.cpp)
kovalune_compile_alone(pictures_tests
  tests/pictures/EmbeddedSettingsTest.cpp
  tests/pictures/PictureFileTest.cpp
  tests/pictures/PlainConversionTest.cpp
  tests/pictures/ExrRestTest.cpp
  tests/pictures/LinearLightTest.cpp
  tests/pictures/ReadOnlyFormatsTest.cpp
  tests/pictures/TiffFileTest.cpp)
kovalune_compile_alone(cli_tests tests/cli/RoundTripTest.cpp)
