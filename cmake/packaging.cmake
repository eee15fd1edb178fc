# What `cmake --install` puts where, and the Debian package that cpack makes of it:
#
#   bin/ondrel                             the program
#   lib/libOndrelCorpComponents.so         the component, with include/ondrel_component.h
#   lib/OndrelCorpComponents/*.a           the rooms, for hosts in C++, with include/OndrelCorpComponents/
#   lib/cmake, lib/pkgconfig               find_package(OndrelCorpComponents), ondrel-corp-components.pc
#   share/OndrelCorpComponents/            database/, counter/, examples/
#   share/doc/ondrel-corp-components/      documents
include(CMakePackageConfigHelpers)
set(PACKAGE_CMAKE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/OndrelCorpComponents)
set(PACKAGE_HEADER_FOLDER ${CMAKE_INSTALL_INCLUDEDIR}/OndrelCorpComponents)
set(PACKAGE_DATA_FOLDER ${CMAKE_INSTALL_DATADIR}/OndrelCorpComponents)
set(PACKAGE_DOCUMENT_FOLDER ${CMAKE_INSTALL_DATADIR}/doc/ondrel-corp-components)

install(TARGETS ondrel)
install(TARGETS OndrelCorpComponents EXPORT OndrelCorpComponentsTargets)

# The rooms without those that only the program and the component use.
get_property(ROOMS GLOBAL PROPERTY ONDREL_ROOMS)
list(REMOVE_ITEM ROOMS host component)
foreach(ROOM ${ROOMS})
  target_include_directories(ondrel_${ROOM} INTERFACE $<INSTALL_INTERFACE:${PACKAGE_HEADER_FOLDER}>)
  install(TARGETS ondrel_${ROOM} EXPORT OndrelCorpComponentsStaticTargets
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/OndrelCorpComponents)
endforeach()
install(DIRECTORY src/ DESTINATION ${PACKAGE_HEADER_FOLDER} FILES_MATCHING PATTERN "*.h"
        PATTERN component EXCLUDE PATTERN host EXCLUDE)

foreach(EXPORTED OndrelCorpComponentsTargets OndrelCorpComponentsStaticTargets)
  install(EXPORT ${EXPORTED} NAMESPACE OndrelCorpComponents:: DESTINATION ${PACKAGE_CMAKE_FOLDER})
endforeach()
configure_package_config_file(cmake/package/config.cmake.in
                              ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfig.cmake
                              INSTALL_DESTINATION ${PACKAGE_CMAKE_FOLDER})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfig.cmake
              ${PROJECT_BINARY_DIR}/OndrelCorpComponentsConfigVersion.cmake cmake/package/duktape.cmake
        DESTINATION ${PACKAGE_CMAKE_FOLDER})
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/package/ondrel_corp_components.pc.in ${PROJECT_BINARY_DIR}/ondrel-corp-components.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ondrel-corp-components.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY database counter examples DESTINATION ${PACKAGE_DATA_FOLDER})
install(DIRECTORY docs/ DESTINATION ${PACKAGE_DOCUMENT_FOLDER})
install(FILES README.md CHANGELOG.md DESTINATION ${PACKAGE_DOCUMENT_FOLDER})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ondrel-corp-components)
set(CPACK_PACKAGE_CONTACT "OndrelCorpComponents <counter@ondrel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Components for the counter of dry-cleaning and laundry stores")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
