set(KOVALUNE_PLATFORM_SOURCES platform/ProfileFile.cpp)
if(WIN32)
  list(APPEND KOVALUNE_PLATFORM_SOURCES
    platform/windows/CriticalSection.cpp
    platform/windows/FileSystem.cpp
    platform/windows/Folders.cpp
    platform/windows/Module.cpp
    platform/windows/Process.cpp
    platform/windows/Profile.cpp
    platform/windows/WindowCalls.cpp)
elseif(EMSCRIPTEN)
  list(APPEND KOVALUNE_PLATFORM_SOURCES
    platform/none/System.cpp
    platform/posix/CriticalSection.cpp
    platform/posix/WindowCalls.cpp)
else()
  list(APPEND KOVALUNE_PLATFORM_SOURCES
    platform/posix/CriticalSection.cpp
    platform/posix/File.cpp
    platform/posix/FileSystem.cpp
    platform/posix/Folders.cpp
    platform/posix/Process.cpp
    platform/posix/Profile.cpp
    platform/posix/WindowCalls.cpp)
endif()
