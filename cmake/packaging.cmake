# What `cmake --install` puts where, and the three Debian packages that cpack makes of it:
#
# | package                  | component   | holds                                                              |
# |--------------------------|-------------|--------------------------------------------------------------------|
# | ondrel                   | program     | bin/ondrel, its pages, database texts and documents, the service   |
# | libondrelcorpcomponents1 | library     | the component, libOndrelCorpComponents.so.1                        |
# | libondrelcorpcomponents- | development | its header; the rooms as static libraries with the headers that a  |
# |   dev                    |             | host in C++ needs; packages for CMake and pkg-config               |
include(CMakePackageConfigHelpers)
set(PACKAGE_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/OndrelCorpComponents)
set(PACKAGE_HEADER_FOLDER ${CMAKE_INSTALL_INCLUDEDIR}/OndrelCorpComponents)
set(PACKAGE_DATA_FOLDER ${CMAKE_INSTALL_DATADIR}/OndrelCorpComponents)
set(PACKAGE_DOCUMENT_FOLDER ${CMAKE_INSTALL_DATADIR}/doc/ondrel)
set(PACKAGE_FILES ${PROJECT_SOURCE_DIR}/cmake/package)

# ---- the component
install(TARGETS OndrelCorpComponents EXPORT OndrelCorpComponentsTargets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        PUBLIC_HEADER COMPONENT development)

# ---- the rooms for hosts in C++, without those that only the program and the component use
get_property(ROOMS GLOBAL PROPERTY ONDREL_ROOMS)
list(REMOVE_ITEM ROOMS host component)
foreach(ROOM ${ROOMS})
  target_include_directories(ondrel_${ROOM} INTERFACE $<INSTALL_INTERFACE:${PACKAGE_HEADER_FOLDER}>)
  install(TARGETS ondrel_${ROOM} EXPORT OndrelCorpComponentsStaticTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/OndrelCorpComponents COMPONENT development)
endforeach()

# What a host in C++ includes: it calls the classes by name. The headers that these include come along.
set(HOST_HEADERS
    automation/class_factory.h
    automation/dispatch/call.h
    automation/drivers.h
    base/dictionary.h
    base/error.h
    data/apartment.h
    data/embedded/embedded_store.h
    data/recordset/recordset.h)

function(ondrel_with_included RESULT)
  set(WAITING ${ARGN})
  set(FOUND "")
  while(WAITING)
    list(POP_FRONT WAITING HEADER)
    list(APPEND FOUND ${HEADER})
    file(STRINGS ${PROJECT_SOURCE_DIR}/src/${HEADER} LINES REGEX "^#include \"")
    foreach(LINE ${LINES})
      string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" INCLUDED ${LINE})
      if(NOT INCLUDED IN_LIST FOUND AND NOT INCLUDED IN_LIST WAITING)
        list(APPEND WAITING ${INCLUDED})
      endif()
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${HEADER})
  endwhile()
  set(${RESULT} ${FOUND} PARENT_SCOPE)
endfunction()

ondrel_with_included(INSTALLED_HEADERS ${HOST_HEADERS})
foreach(HEADER ${INSTALLED_HEADERS})
  get_filename_component(FOLDER ${HEADER} DIRECTORY)
  install(FILES src/${HEADER} DESTINATION ${PACKAGE_HEADER_FOLDER}/${FOLDER} COMPONENT development)
endforeach()

# ---- for build systems
foreach(EXPORTED OndrelCorpComponentsTargets OndrelCorpComponentsStaticTargets)
  install(EXPORT ${EXPORTED} NAMESPACE OndrelCorpComponents:: DESTINATION ${PACKAGE_CMAKE_FOLDER}
          COMPONENT development)
endforeach()
configure_package_config_file(cmake/package/config.cmake.in
                              ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfig.cmake
                              INSTALL_DESTINATION ${PACKAGE_CMAKE_FOLDER})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfig.cmake
              ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfigVersion.cmake cmake/package/duktape.cmake
        DESTINATION ${PACKAGE_CMAKE_FOLDER} COMPONENT development)
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/package/ondrel_corp_components.pc.in ${PROJECT_BINARY_DIR}/ondrel-corp-components.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ondrel-corp-components.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)

# ---- the program
# gzip without the time and the name, so that the same source gives the same package.
function(ondrel_gzipped FILE)
  get_filename_component(NAME ${FILE} NAME)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${FILE})
  execute_process(COMMAND gzip -9nc ${FILE} OUTPUT_FILE ${PROJECT_BINARY_DIR}/${NAME}.gz COMMAND_ERROR_IS_FATAL ANY)
endfunction()
ondrel_gzipped(${PROJECT_SOURCE_DIR}/docs/ondrel.1)

install(TARGETS ondrel COMPONENT program)
install(DIRECTORY database counter examples DESTINATION ${PACKAGE_DATA_FOLDER} COMPONENT program)
install(DIRECTORY docs/ DESTINATION ${PACKAGE_DOCUMENT_FOLDER} COMPONENT program PATTERN ondrel.1 EXCLUDE)
install(FILES README.md SECURITY.md DESTINATION ${PACKAGE_DOCUMENT_FOLDER} COMPONENT program)
install(FILES ${PROJECT_BINARY_DIR}/ondrel.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES ${PACKAGE_FILES}/completion.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME ondrel COMPONENT program)
install(FILES ${PACKAGE_FILES}/ondrel.service DESTINATION lib/systemd/system COMPONENT program)

# ---- the Debian packages
ondrel_gzipped(${PACKAGE_FILES}/debian/changelog)
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL program library development)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME ondrel)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libondrelcorpcomponents${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libondrelcorpcomponents-dev)
foreach(COMPONENT program library development)
  string(TOUPPER ${COMPONENT} UPPER)
  set(FOLDER ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${UPPER}_PACKAGE_NAME})
  install(FILES ${PACKAGE_FILES}/debian/copyright DESTINATION ${FOLDER} COMPONENT ${COMPONENT})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${FOLDER}
          COMPONENT ${COMPONENT})
endforeach()
install(FILES ${PACKAGE_FILES}/debian/lintian_overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME} COMPONENT library)
set(CPACK_PACKAGE_NAME ondrel)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "OndrelCorpComponents <counter@ondrel.example>")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "Counter of a dry-cleaning and laundry store
Serves the counter to browsers: tickets, prices, promised days, payment.
Also runs scripts over the components and looks after a store's database.")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
    "Components for the counter of dry-cleaning stores
The classes of the counter for programs in any language that can call C.
Objects are made by class id and called by name.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Components for the counter of dry-cleaning stores, development
The header of the shared library, and static libraries with headers for
hosts in C++.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION web)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS libondrelcorpcomponents${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PACKAGE_FILES}/debian/triggers)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libondrelcorpcomponents${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), libfmt-dev, libxml2-dev, libsqlite3-dev, unixodbc-dev, duktape-dev")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
