# What is installed and where: "runtime" is what a user needs, "development" what a builder needs.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

list(TRANSFORM velda_public_libraries PREPEND velda_ OUTPUT_VARIABLE VELDA_LIBRARY_TARGETS)
set(VELDA_PROGRAMS)
if(VELDA_BUILD_PROGRAMS)
    list(APPEND VELDA_PROGRAMS velda-db-parser)
endif()
if(VELDA_BUILD_TOOLS)
    list(APPEND VELDA_PROGRAMS velda-dbtool)
endif()
set(VELDA_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/velda-db)
set(VELDA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/velda-db)
set(VELDA_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/velda-db-parser)

# Shared libraries are found from wherever all of it is put.
if(BUILD_SHARED_LIBS)
    file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${VELDA_PROGRAMS} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    set_target_properties(${VELDA_LIBRARY_TARGETS} PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

install(TARGETS ${VELDA_PROGRAMS} RUNTIME COMPONENT runtime)
install(TARGETS ${VELDA_LIBRARY_TARGETS} EXPORT velda-db-targets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION ${VELDA_INCLUDE_DIR} COMPONENT development)
install(FILES ${VELDA_GENERATED}/common/version.h
    DESTINATION ${VELDA_INCLUDE_DIR}/common COMPONENT development)

# ---- For CMake: find_package(velda-db) -----------------------------------------------------------

set(compatibility SameMajorVersion)
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(compatibility SameMinorVersion)
endif()
configure_package_config_file(cmake/velda-db-config.cmake.in
    ${PROJECT_BINARY_DIR}/velda-db-config.cmake INSTALL_DESTINATION ${VELDA_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/velda-db-config-version.cmake
    COMPATIBILITY ${compatibility})
install(FILES
    ${PROJECT_BINARY_DIR}/velda-db-config.cmake
    ${PROJECT_BINARY_DIR}/velda-db-config-version.cmake
    DESTINATION ${VELDA_CMAKE_DIR} COMPONENT development)
install(EXPORT velda-db-targets NAMESPACE velda::
    DESTINATION ${VELDA_CMAKE_DIR} COMPONENT development)

# ---- For pkg-config: one file for each library ---------------------------------------------------

file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_prefix ${pc_prefix})
foreach(folder LIB INCLUDE)
    set(pc_${folder} "\${prefix}")
    cmake_path(APPEND pc_${folder} ${CMAKE_INSTALL_${folder}DIR}) # an absolute one replaces
endforeach()

function(velda_pkg_config library description)
    cmake_parse_arguments(pc "" "" "REQUIRES;PRIVATE" ${ARGN})
    list(JOIN pc_REQUIRES " " pc_REQUIRES)
    list(JOIN pc_PRIVATE " " pc_PRIVATE)
    set(file ${PROJECT_BINARY_DIR}/velda-${library}.pc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/velda.pc.in ${file} @ONLY)
    install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

velda_pkg_config(common "Result codes, texts, protocol names, sets of application identifiers")
velda_pkg_config(xmlp "Small, strict XML library for configuration documents")
velda_pkg_config(quelm "DES and MD5 operations, sealed files" PRIVATE libcrypto)
velda_pkg_config(appmngr "Reader of application-identification databases"
    REQUIRES velda-common velda-xmlp PRIVATE velda-quelm liblzma)

# ---- Man pages and other texts -------------------------------------------------------------------

foreach(section 1 3)
    file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.${section})
    set(component development)
    if(section EQUAL 1)
        set(component runtime)
    endif()
    install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section} COMPONENT ${component})
endforeach()

install(FILES tools/velda-dbtool.bash-completion RENAME velda-dbtool OPTIONAL
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT runtime)

# As in the project, so that they find each other.
file(GLOB texts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
install(FILES ${texts} DESTINATION ${VELDA_DOC_DIR}/docs COMPONENT runtime)
install(FILES README.md CHANGELOG.md DESTINATION ${VELDA_DOC_DIR} COMPONENT runtime)
install(FILES LICENSE SECURITY.md DESTINATION ${VELDA_DOC_DIR} COMPONENT runtime OPTIONAL)
install(DIRECTORY docs/examples DESTINATION ${VELDA_DOC_DIR}/docs COMPONENT development)
