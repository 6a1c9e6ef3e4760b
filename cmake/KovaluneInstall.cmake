# Where files are installed. Each folder installs its own, by component:
#   plugin        the plug-in; with a text on what to do with it, where hosts take it by hand
#   frei0r        the plug-in for frei0r hosts, where they look for it below /usr and /usr/local
#   openfx        the bundle for OpenFX hosts, which look for it in /usr/OFX/Plugins
#   command       the command, its manual page and its completions
#   documents     README, CHANGELOG and docs/
#   example       pictures to try it on
#   development   the library of the effect for other programs, its headers and what find_package(Kovalune) reads
include(GNUInstallDirs)

# The same modes whatever the umask of the user who installs or packs.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# On Windows the plug-in goes by hand into a host's folder: it lies at the top.
if(WIN32)
  set(KOVALUNE_PLUGIN_FOLDER .)
else()
  set(KOVALUNE_PLUGIN_FOLDER ${CMAKE_INSTALL_LIBDIR}/kovalune)
endif()
# With the prefix /usr the folder where hosts look; on Windows the bundle goes there by hand too.
if(WIN32)
  set(KOVALUNE_OFX_FOLDER .)
else()
  set(KOVALUNE_OFX_FOLDER OFX/Plugins)
endif()
set(KOVALUNE_DOCUMENT_FOLDER ${CMAKE_INSTALL_DATAROOTDIR}/doc/kovalune)
set(KOVALUNE_HEADER_FOLDER ${CMAKE_INSTALL_INCLUDEDIR}/kovalune)
set(KOVALUNE_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/Kovalune)

# kovalune_install_headers(FOLDER HEADER...): beside the headers of the project's other folders, as its sources include them.
function(kovalune_install_headers folder)
  install(FILES ${ARGN} DESTINATION ${KOVALUNE_HEADER_FOLDER}/${folder} COMPONENT development)
endfunction()
