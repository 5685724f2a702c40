# Debian packages (./dev package): the programs, and what is needed to build with the libraries.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velda-db-parser)
set(CPACK_PACKAGE_VENDOR "velda-db-parser developers")
set(CPACK_PACKAGE_CONTACT "velda-db-parser developers <developers@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME velda-db-parser)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION net)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/common ${PROJECT_BINARY_DIR}/xmlp ${PROJECT_BINARY_DIR}/crypto
    ${PROJECT_BINARY_DIR}/appmngr)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${PROJECT_DESCRIPTION}
The program velda-db-parser lists the applications of a database image,
velda-dbtool makes such images.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvelda-db-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liblzma-dev, libssl-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Libraries to read application-identification databases and XML
Headers, libraries, man pages and the files for CMake and pkg-config: the
database reader, the XML library, DES and MD5 operations.")
if(BUILD_SHARED_LIBS)
    set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
endif()

include(CPack)
