set(KOVALUNE_PLATFORM_SOURCES platform/ProfileFile.cpp)
if(NOT WIN32)
  list(APPEND KOVALUNE_PLATFORM_SOURCES
    platform/posix/CriticalSection.cpp
    platform/posix/File.cpp
    platform/posix/Folders.cpp
    platform/posix/Process.cpp
    platform/posix/Profile.cpp)
endif()
