# What each instruction set's kernels are compiled with. Only these objects have instructions that a machine may lack, so they
# share no function with others: everything in them stands in an unnamed namespace, and they use no header of the standard
# library but <cstdint>.
set(KOVALUNE_KERNEL_SOURCES kernels/Kernels.cpp kernels/plain/Kernels.cpp)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86|x86)$")
  list(APPEND KOVALUNE_KERNEL_SOURCES
    kernels/sse2/Kernels.cpp kernels/avx2/Kernels.cpp kernels/avx512/Kernels.cpp)
  set_source_files_properties(kernels/sse2/Kernels.cpp PROPERTIES COMPILE_OPTIONS "-msse2")
  set_source_files_properties(kernels/avx2/Kernels.cpp PROPERTIES COMPILE_OPTIONS "-mavx2;-mfma")
  set(avx512 -mavx512f -mavx512bw -mavx512vl -mavx512dq -mfma -mprefer-vector-width=512)
  if(KOVALUNE_SANITIZE)
    # With a check in every unrolled step they would take a minute to compile.
    list(APPEND avx512 -O0)
  endif()
  set_source_files_properties(kernels/avx512/Kernels.cpp PROPERTIES COMPILE_OPTIONS "${avx512}")
endif()
