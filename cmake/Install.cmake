# What is installed and where, of what is built. Components: "parser" and "tool" are what users of one
# program need, "libraries" the shared libraries, "development" what a builder needs and all texts.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VELDA_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/velda-db)
set(VELDA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/velda-db)
set(VELDA_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/velda-db-parser)

# Where a file of the project gets installed, for the links between texts.
function(velda_installed_as source folder name)
    cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
    set("velda_place_of_${source}" ${folder}/${name} PARENT_SCOPE)
endfunction()

# ---- Programs and libraries ----------------------------------------------------------------------

set(velda_installed_libraries ${velda_public_libraries})
set(velda_built_programs "")
if(VELDA_BUILD_PROGRAMS)
    list(APPEND velda_built_programs velda-db-parser)
    install(TARGETS velda-db-parser RUNTIME COMPONENT parser)
endif()
if(VELDA_BUILD_TOOLS)
    list(APPEND velda_built_programs velda-dbtool)
    install(TARGETS velda-dbtool RUNTIME COMPONENT tool)
    install(FILES tools/velda-dbtool.bash-completion RENAME velda-dbtool
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT tool)
endif()

foreach(library IN LISTS velda_installed_libraries)
    install(TARGETS velda_${library} EXPORT velda-db-targets
        LIBRARY COMPONENT libraries NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        FILE_SET HEADERS DESTINATION ${VELDA_INCLUDE_DIR} COMPONENT development)
    # <velda-db/xmlp/xmlp.h> beside <xmlp/xmlp.h>.
    target_include_directories(velda_${library} INTERFACE
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    get_target_property(header velda_${library} HEADER_SET)
    file(RELATIVE_PATH header ${PROJECT_SOURCE_DIR} ${header})
    velda_installed_as(${header} ${VELDA_INCLUDE_DIR} ${header})
endforeach()
if("common" IN_LIST velda_installed_libraries)
    install(FILES ${VELDA_GENERATED}/common/version.h
        DESTINATION ${VELDA_INCLUDE_DIR}/common COMPONENT development)
endif()

# Shared libraries are found from wherever all of it is put; in /usr the system looks by itself.
if(BUILD_SHARED_LIBS AND NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    file(RELATIVE_PATH folder ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    foreach(program IN LISTS velda_built_programs)
        set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${folder}")
    endforeach()
    foreach(library IN LISTS velda_installed_libraries)
        set_target_properties(velda_${library} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endforeach()
endif()

# ---- For CMake: find_package(velda-db) -----------------------------------------------------------

# What those who link static libraries must have; shared ones bring it themselves.
set(velda_appmngr_needs "")
set(velda_quelm_needs "")
set(velda_appmngr_uses_quelm OFF)
if("appmngr" IN_LIST velda_installed_libraries)
    get_target_property(linked velda_appmngr LINK_LIBRARIES)
    if(linked MATCHES "quelm") # not without the container
        set(velda_appmngr_uses_quelm ON)
    endif()
endif()
if(NOT BUILD_SHARED_LIBS)
    if("appmngr" IN_LIST velda_installed_libraries)
        set(velda_appmngr_needs LibLZMA)
    endif()
    if("quelm" IN_LIST velda_installed_libraries)
        set(velda_quelm_needs OpenSSL)
    endif()
    if(velda_appmngr_uses_quelm)
        list(APPEND velda_appmngr_needs OpenSSL)
    endif()
endif()

if(velda_installed_libraries)
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
        cmake/LzmaDecoder.cmake
        DESTINATION ${VELDA_CMAKE_DIR} COMPONENT development)
    install(EXPORT velda-db-targets NAMESPACE velda::
        DESTINATION ${VELDA_CMAKE_DIR} COMPONENT development)
endif()

# ---- For pkg-config: one file for each library ---------------------------------------------------

file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_prefix ${pc_prefix})
foreach(folder LIB INCLUDE)
    set(pc_${folder} "\${prefix}")
    cmake_path(APPEND pc_${folder} ${CMAKE_INSTALL_${folder}DIR}) # an absolute one replaces
endforeach()

function(velda_pkg_config library description)
    if(NOT library IN_LIST velda_installed_libraries)
        return()
    endif()
    cmake_parse_arguments(pc "" "" "REQUIRES;PRIVATE" ${ARGN})
    if(BUILD_SHARED_LIBS)
        set(pc_PRIVATE "")
    endif()
    list(JOIN pc_REQUIRES " " pc_REQUIRES)
    list(JOIN pc_PRIVATE " " pc_PRIVATE)
    set(file ${PROJECT_BINARY_DIR}/velda-${library}.pc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/velda.pc.in ${file} @ONLY)
    install(FILES ${file} DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

velda_pkg_config(common "Result codes, texts, protocol names, sets of application identifiers")
velda_pkg_config(xmlp "Small, strict XML library for configuration documents")
velda_pkg_config(quelm "DES and MD5 operations, sealed files" PRIVATE libcrypto)
if("appmngr" IN_LIST velda_installed_libraries)
    set(private liblzma)
    if(velda_appmngr_uses_quelm)
        list(PREPEND private velda-quelm)
    endif()
    velda_pkg_config(appmngr "Reader of application-identification databases"
        REQUIRES velda-common velda-xmlp PRIVATE ${private})
endif()

# ---- Man pages -----------------------------------------------------------------------------------

if(NOT VELDA_INSTALL_DOCS)
    return()
endif()

set(man1 ${CMAKE_INSTALL_MANDIR}/man1)
set(man3 ${CMAKE_INSTALL_MANDIR}/man3)
if(VELDA_BUILD_PROGRAMS)
    install(FILES docs/velda-db-parser.1 DESTINATION ${man1} COMPONENT parser)
endif()
if(VELDA_BUILD_TOOLS)
    install(FILES docs/velda-dbtool.1 DESTINATION ${man1} COMPONENT tool)
endif()
foreach(library IN LISTS velda_installed_libraries)
    install(FILES docs/velda_${library}.3 DESTINATION ${man3} COMPONENT development)
endforeach()

# ---- Examples ------------------------------------------------------------------------------------

# velda_install_example(<folder> <file of the project>)
macro(velda_install_example folder file)
    install(FILES ${file} DESTINATION ${folder} COMPONENT development)
    get_filename_component(name ${file} NAME)
    velda_installed_as(${file} ${folder} ${name})
endmacro()

set(folder ${VELDA_DOC_DIR}/examples)
foreach(sample full small)
    velda_install_example(${folder} samples/${sample}.xml)
    foreach(component parser tool) # for packages, which have a folder each
        install(FILES samples/${sample}.xml DESTINATION ${folder} COMPONENT ${component} EXCLUDE_FROM_ALL)
    endforeach()
endforeach()
if(velda_installed_libraries)
    velda_install_example(${folder} docs/examples/CMakeLists.txt)
    velda_installed_as(docs/examples ${VELDA_DOC_DIR} examples)
endif()
foreach(library IN LISTS velda_installed_libraries)
    velda_install_example(${folder} docs/examples/${library}.c)
endforeach()
if("xmlp" IN_LIST velda_installed_libraries)
    velda_install_example(${folder}/xmlp xmlp/examples/edit.c)
    velda_install_example(${folder}/xmlp xmlp/examples/config.xml)
endif()

# ---- Texts ---------------------------------------------------------------------------------------

# Installs a text with its links led to where the files of the project are installed. What is not
# installed is named without a link.
function(velda_install_text source)
    set(place ${velda_place_of_${source}})
    cmake_path(GET source PARENT_PATH base)
    cmake_path(GET place PARENT_PATH folder)
    file(READ ${source} text)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${source})
    string(ASCII 1 mark) # single brackets would spoil the lists of CMake
    string(REPLACE "](" "${mark}" text "${text}")
    string(REGEX MATCHALL "${mark}[^)#:${mark}]+" links "${text}")
    list(REMOVE_DUPLICATES links)
    foreach(link IN LISTS links)
        string(SUBSTRING ${link} 1 -1 target)
        set(file ${base})
        cmake_path(APPEND file ${target})
        cmake_path(NORMAL_PATH file)
        if(DEFINED "velda_place_of_${file}")
            file(RELATIVE_PATH to ${folder} ${velda_place_of_${file}})
            string(REPLACE "${link})" "](${to})" text "${text}")
            string(REPLACE "${link}#" "](${to}#" text "${text}")
        elseif(EXISTS ${PROJECT_SOURCE_DIR}/${file})
            string(REGEX REPLACE "\\[([^][]*)${link}(#[^)]*)?\\)" "\\1" text "${text}")
        endif()
    endforeach()
    string(REPLACE "${mark}" "](" text "${text}")
    set(made ${PROJECT_BINARY_DIR}/texts/${source})
    file(WRITE ${made} "${text}")
    install(FILES ${made} DESTINATION ${VELDA_DOC_DIR}/${base} COMPONENT development)
endfunction()

file(GLOB texts RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
list(APPEND texts README.md CHANGELOG.md SECURITY.md)
foreach(text IN LISTS texts)
    velda_installed_as(${text} ${VELDA_DOC_DIR} ${text})
endforeach()
foreach(text IN LISTS texts)
    velda_install_text(${text})
endforeach()
