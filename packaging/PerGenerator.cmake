# CPack reads this once for each kind of package: an archive has one folder at its top, Debian's package the root.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
else()
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
