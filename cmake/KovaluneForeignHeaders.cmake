# Libraries of headers alone, for emscripten too: it must not see the folder that they stand in, where the headers of another C
# library are, so it gets a folder of links.
#   kovalune_foreign_headers  stb and nlohmann-json, under their own names
add_library(kovalune_foreign_headers INTERFACE)
if(EMSCRIPTEN)
  set(folder ${PROJECT_BINARY_DIR}/foreign)
  file(MAKE_DIRECTORY ${folder})
  foreach(library stb nlohmann)
    file(CREATE_LINK /usr/include/${library} ${folder}/${library} SYMBOLIC)
  endforeach()
  target_include_directories(kovalune_foreign_headers SYSTEM INTERFACE ${folder})
endif()
