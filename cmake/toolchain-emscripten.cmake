# A page in a browser, with Debian's emscripten, whose file would otherwise take the processor for an x86.
set(EMSCRIPTEN_SYSTEM_PROCESSOR wasm32)
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
