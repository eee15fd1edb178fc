# The script engine brings no package of its own; an installation looks for it on the machine where it is used.
find_path(DUKTAPE_INCLUDE duktape.h REQUIRED)
find_library(DUKTAPE_LIBRARY duktape REQUIRED)
if(NOT TARGET Duktape::duktape)
  add_library(Duktape::duktape UNKNOWN IMPORTED)
  set_target_properties(Duktape::duktape PROPERTIES IMPORTED_LOCATION ${DUKTAPE_LIBRARY}
                                                    INTERFACE_INCLUDE_DIRECTORIES ${DUKTAPE_INCLUDE})
endif()
