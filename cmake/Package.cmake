# Debian packages (./dev package), one for each component. What Debian wants of a package's files is
# done by cmake/debian/finish.cmake when they are packed.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velda-db-parser)
set(CPACK_PACKAGE_VENDOR "velda-db-parser developers")
set(CPACK_PACKAGE_CONTACT "velda-db-parser developers <developers@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # it would stand before that of every package
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/finish.cmake)
set(CPACK_VELDA_STRIP ${CMAKE_STRIP})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 0velda1) # packed by this project, not by Debian
set(CPACK_DEBIAN_PACKAGE_SOURCE velda-db-parser)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/common ${PROJECT_BINARY_DIR}/xmlp ${PROJECT_BINARY_DIR}/crypto
    ${PROJECT_BINARY_DIR}/appmngr)

set(CPACK_COMPONENTS_ALL "")
# velda_package(<component> <name> <section> <description>): the description begins with a line of its own.
macro(velda_package component name section description)
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    list(APPEND CPACK_VELDA_PACKAGES ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${description}")
endmacro()

if(VELDA_BUILD_PROGRAMS)
    velda_package(parser velda-db-parser net "lister of the applications in a device's database
velda-db-parser reads the application-identification database of a network
device, an image file with compressed XML in it, and writes the plain list of
the applications: the version, then a line of identifier and name for each.")
    set(CPACK_DEBIAN_PARSER_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PARSER_PACKAGE_SUGGESTS velda-dbtool)
endif()

if(VELDA_BUILD_TOOLS)
    velda_package(tool velda-dbtool net "authoring tool for application-identification databases
velda-dbtool makes the database images that velda-db-parser reads from XML
documents. It tells what a device would leave out, shows what stands in an
image as tables or JSON, compares images, and makes and opens containers.")
    set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS "velda-db-parser, bash-completion")
endif()

if(velda_installed_libraries AND BUILD_SHARED_LIBS)
    velda_package(libraries libvelda-db${VELDA_SOVERSION} libs
        "readers of application-identification databases and XML (libraries)
Shared libraries: the reader of the application-identification databases of
network devices, a small strict XML library, DES and MD5 operations.")
    set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SHLIBDEPS ON)

    # Which package a program needs that is linked with one of them; the system's list is made anew.
    set(control ${PROJECT_BINARY_DIR}/debian)
    set(shlibs "")
    foreach(library IN LISTS velda_installed_libraries)
        string(APPEND shlibs "libvelda_${library} ${VELDA_SOVERSION} libvelda-db${VELDA_SOVERSION}\n")
    endforeach()
    file(WRITE ${control}/shlibs "${shlibs}")
    file(WRITE ${control}/triggers "activate-noawait ldconfig\n")
    set(CPACK_DEBIAN_LIBRARIES_PACKAGE_CONTROL_EXTRA ${control}/shlibs ${control}/triggers)

    # All libraries in one package, as they are made for each other; CPack calls ldconfig besides.
    set(overrides "")
    foreach(tag package-name-doesnt-match-sonames maintscript-calls-ldconfig)
        string(APPEND overrides "libvelda-db${VELDA_SOVERSION}: ${tag} *\n")
    endforeach()
    file(WRITE ${control}/overrides "${overrides}")
    install(FILES ${control}/overrides RENAME libvelda-db${VELDA_SOVERSION} EXCLUDE_FROM_ALL
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT libraries)

    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
    set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS libraries)
    set(CPACK_COMPONENT_TOOL_DEPENDS libraries) # velda-db-parser has all that it needs in itself
endif()

if(velda_installed_libraries)
    velda_package(development libvelda-db-dev libdevel
        "readers of application-identification databases and XML (development)
Headers, libraries, man pages, examples and the files for CMake and pkg-config:
the reader of the application-identification databases of network devices, a
small strict XML library, DES and MD5 operations. They need no C++ run-time
library; C and C++ programs use them alike.")
    set(depends libc6-dev)
    if("LibLZMA" IN_LIST velda_appmngr_needs)
        list(APPEND depends liblzma-dev)
    endif()
    if(velda_quelm_needs)
        list(APPEND depends libssl-dev)
    endif()
    list(JOIN depends ", " CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS velda-dbtool)
endif()

include(CPack)
