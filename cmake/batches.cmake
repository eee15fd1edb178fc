# A source file costs its headers, some 1.5 s, before its own code costs a tenth of that. Files of a folder are
# therefore compiled together, in batches of at most ONDREL_BATCH_FILES; 1 compiles each by itself. The batches of
# a folder are of even size, and a file that comes or goes moves none of another folder.
#
# What this asks of a file: a name at the margin, also in an unnamed namespace, is the only one of its name in the
# room. A file that opens an enumeration for itself whose words mean something else next door stands in ALONE.
set(ONDREL_BATCH_FILES 10 CACHE STRING "Source files that are compiled together; 1 compiles each by itself")

#   ondrel_batches(TARGET [ALONE PATTERN...])      patterns of file names
function(ondrel_batches TARGET)
  cmake_parse_arguments(BATCH "" "" "ALONE" ${ARGN})
  if(ONDREL_BATCH_FILES LESS_EQUAL 1)
    return()
  endif()
  get_target_property(SOURCES ${TARGET} SOURCES)
  list(FILTER SOURCES INCLUDE REGEX "\\.cpp$")
  foreach(FILE ${BATCH_ALONE})
    list(FILTER SOURCES EXCLUDE REGEX "/${FILE}$")
  endforeach()
  set_target_properties(${TARGET} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  # The warning is meant for headers, and takes a file of a batch for one.
  target_compile_options(${TARGET} PRIVATE -Wno-subobject-linkage)
  # A batch is as large as ten files: without this g++ stops putting small functions in place half way.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${TARGET} PRIVATE "SHELL:--param large-unit-insns=200000")
  endif()

  set(FOLDERS)
  foreach(SOURCE ${SOURCES})
    cmake_path(GET SOURCE PARENT_PATH FOLDER)
    cmake_path(GET FOLDER FILENAME NAME)
    list(APPEND FOLDERS ${NAME})
    list(APPEND FILES_OF_${NAME} ${SOURCE})
  endforeach()
  list(REMOVE_DUPLICATES FOLDERS)
  foreach(NAME ${FOLDERS})
    list(LENGTH FILES_OF_${NAME} COUNT)
    math(EXPR BATCHES "(${COUNT} + ${ONDREL_BATCH_FILES} - 1) / ${ONDREL_BATCH_FILES}")
    set(INDEX 0)
    foreach(SOURCE ${FILES_OF_${NAME}})
      math(EXPR BATCH "${INDEX} * ${BATCHES} / ${COUNT} + 1")
      math(EXPR INDEX "${INDEX} + 1")
      set_property(SOURCE ${SOURCE} PROPERTY UNITY_GROUP ${NAME}_${BATCH})
    endforeach()
  endforeach()
endfunction()
