# Sets KOVALUNE_VERSION to the effect's version, which stands in the code alone: effect/frame/EffectVersion.h, from which
# hosts get it. A change of that file configures anew.
set(KOVALUNE_VERSION_HEADER ${CMAKE_CURRENT_LIST_DIR}/../effect/frame/EffectVersion.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${KOVALUNE_VERSION_HEADER})
set(KOVALUNE_VERSION)
foreach(part Major Minor Bugfix)
  file(STRINGS ${KOVALUNE_VERSION_HEADER} line REGEX "int kVersion${part} = [0-9]+;")
  if(NOT line MATCHES " = ([0-9]+)")
    message(FATAL_ERROR "${KOVALUNE_VERSION_HEADER} has no line for kVersion${part}")
  endif()
  list(APPEND KOVALUNE_VERSION ${CMAKE_MATCH_1})
endforeach()
list(JOIN KOVALUNE_VERSION . KOVALUNE_VERSION)
