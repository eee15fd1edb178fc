# Adds a source file to a target that is made when the build is configured. It is written only when its text has
# changed, so that nothing is compiled anew for nothing.
function(ondrel_generated_source TARGET NAME TEXT)
  set(OUTPUT ${PROJECT_BINARY_DIR}/${NAME})
  set(BEFORE "")
  if(EXISTS ${OUTPUT})
    file(READ ${OUTPUT} BEFORE)
  endif()
  if(NOT TEXT STREQUAL BEFORE)
    file(WRITE ${OUTPUT} "${TEXT}")
  endif()
  target_sources(${TARGET} PRIVATE ${OUTPUT})
endfunction()
