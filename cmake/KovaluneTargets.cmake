# Interface targets that every target of the project builds on.
#   kovalune_warnings    the warnings; the presets make them errors (CMAKE_COMPILE_WARNING_AS_ERROR)
#   kovalune_arithmetic  what keeps a result the same to the last bit on every machine: no contraction of
#                        a * b + c, no fast-math, SSE2 instead of the x87 on 32-bit x86
#   kovalune_sanitizers  the checks that KOVALUNE_SANITIZE names ("address", "thread", "memory" or empty)
#   kovalune_windows     how files for Windows are linked
include(CheckCXXCompilerFlag)

add_library(kovalune_warnings INTERFACE)
target_compile_options(kovalune_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wdouble-promotion -Wshadow
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wold-style-cast -Wnull-dereference -Wundef
  -Wimplicit-fallthrough -Wunused)
# Of several files that are compiled as one, GCC takes all but the first for headers.
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(kovalune_warnings INTERFACE -Wno-subobject-linkage)
endif()
# GCC 12 takes a literal joined with a std::string for an overlapping copy, inside the library.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(kovalune_warnings INTERFACE -Wno-restrict)
endif()

add_library(kovalune_arithmetic INTERFACE)
target_compile_options(kovalune_arithmetic INTERFACE -ffp-contract=off -fno-fast-math)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$" OR (CMAKE_SIZEOF_VOID_P EQUAL 4 AND
   CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$"))
  target_compile_options(kovalune_arithmetic INTERFACE -msse2 -mfpmath=sse -mstackrealign)
endif()
# GCC would otherwise mark some static variables of templates as unique in the process, which keeps a plug-in from unloading.
check_cxx_compiler_flag(-fno-gnu-unique KOVALUNE_HAS_NO_GNU_UNIQUE)
if(KOVALUNE_HAS_NO_GNU_UNIQUE)
  target_compile_options(kovalune_arithmetic INTERFACE -fno-gnu-unique)
endif()

set(KOVALUNE_SANITIZE "" CACHE STRING "address (with undefined behaviour), thread, memory, or empty")
add_library(kovalune_sanitizers INTERFACE)
if(KOVALUNE_SANITIZE STREQUAL "address")
  set(flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # An index past a vector's or a span's end may still lie in its memory.
  target_compile_definitions(kovalune_sanitizers INTERFACE _GLIBCXX_ASSERTIONS)
elseif(KOVALUNE_SANITIZE STREQUAL "thread")
  set(flags -fsanitize=thread -fno-omit-frame-pointer)
elseif(KOVALUNE_SANITIZE STREQUAL "memory")
  # The standard library's templates are compiled here, where what they write is seen; what is not, is listed.
  set(flags -fsanitize=memory -fsanitize-memory-track-origins -fno-omit-frame-pointer
            -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/memory-sanitizer-ignored.txt)
  target_compile_definitions(kovalune_sanitizers INTERFACE _GLIBCXX_EXTERN_TEMPLATE=0 KOVALUNE_MEMORY_SANITIZED)
elseif(NOT KOVALUNE_SANITIZE STREQUAL "")
  message(FATAL_ERROR "KOVALUNE_SANITIZE is '${KOVALUNE_SANITIZE}'; it takes address, thread, memory or nothing")
endif()
if(flags)
  if(KOVALUNE_FUZZ)
    target_compile_options(kovalune_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
  endif()
  target_compile_options(kovalune_sanitizers INTERFACE ${flags})
  target_link_options(kovalune_sanitizers INTERFACE ${flags})
endif()

# What ships ends at once where memory is overwritten, and has nothing at known places. On Windows the linker sees to the second
# by itself; its runtime has nothing for the first that old systems would load.
if(NOT WIN32 AND NOT EMSCRIPTEN AND NOT KOVALUNE_SANITIZE)
  string(APPEND CMAKE_CXX_FLAGS_RELEASE " -D_FORTIFY_SOURCE=2 -fstack-protector-strong")
  add_link_options(LINKER:-z,relro,-z,now)
endif()

# A page's code: vectors of 128 bits, which the plain kernels are compiled to, and the exceptions of the machine itself.
if(EMSCRIPTEN)
  add_compile_options(-msimd128 -fwasm-exceptions)
  add_link_options(-fwasm-exceptions -sALLOW_MEMORY_GROWTH=1 -sMAXIMUM_MEMORY=4GB)
  if(KOVALUNE_WEB_THREADS)
    add_compile_options(-pthread)
    add_link_options(-pthread)
  endif()
endif()

# kovalune_optimize_less(LEVEL), in a folder that has no pixels or the file libraries' loops around them: what it compiles is
# ready sooner, and as fast. Under a sanitizer it is not optimised at all, where that takes three times as long as compiling.
macro(kovalune_optimize_less level)
  string(REPLACE "-O3" "${level}" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
  if(KOVALUNE_SANITIZE)
    string(REPLACE "-O1" "-O0" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
  endif()
endmacro()

# The layout of the host's records on 64-bit systems other than Windows: "x64" for that of the 64-bit hosts,
# "native" for the 16-bit rectangles of the 32-bit ones, which the native builds test otherwise. Windows needs no
# choice.
set(KOVALUNE_HOST_LAYOUT "native" CACHE STRING "native or x64")
set_property(CACHE KOVALUNE_HOST_LAYOUT PROPERTY STRINGS native x64)
if(NOT KOVALUNE_HOST_LAYOUT MATCHES "^(native|x64)$")
  message(FATAL_ERROR "KOVALUNE_HOST_LAYOUT is '${KOVALUNE_HOST_LAYOUT}'; it takes native or x64")
endif()

# Files for Windows carry their runtime with them, and the same sources give the same bytes.
add_library(kovalune_windows INTERFACE)
if(WIN32)
  target_link_options(kovalune_windows INTERFACE -static -Wl,--no-insert-timestamp)
endif()

add_library(kovalune_common INTERFACE)
target_compile_features(kovalune_common INTERFACE cxx_std_20)
target_include_directories(kovalune_common INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${KOVALUNE_HEADER_FOLDER}>)
if(KOVALUNE_HOST_LAYOUT STREQUAL "x64")
  target_compile_definitions(kovalune_common INTERFACE KOVALUNE_HOST_LONG_RECTS)
endif()
# How the project compiles is no matter of programs that use an installed library.
target_link_libraries(kovalune_common INTERFACE
  $<BUILD_INTERFACE:kovalune_warnings> $<BUILD_INTERFACE:kovalune_arithmetic>
  $<BUILD_INTERFACE:kovalune_sanitizers> $<BUILD_INTERFACE:kovalune_windows>)
set_target_properties(kovalune_common PROPERTIES EXPORT_NAME common)
install(TARGETS kovalune_common EXPORT Kovalune COMPONENT development)
