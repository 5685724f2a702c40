# Run by CPack when the files of all packages are laid out, before they are packed: gives each package what
# Debian wants to find in it. The name of the component is the name of the folder.

# What a package holds has these modes whatever the umask is; installing gives files theirs.
set(folder_modes OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(file_modes OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Without name and date, so that the same text is the same file.
function(compress file)
    run(gzip -9n ${file})
    file(CHMOD ${file}.gz PERMISSIONS ${file_modes})
endfunction()

function(finish root package)
    set(share ${root}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
    set(doc ${share}/doc/${package})

    # In a prefix of its own the project has one folder of texts; each package has one under its name.
    if(EXISTS ${share}/doc/velda-db-parser AND NOT package STREQUAL "velda-db-parser")
        file(RENAME ${share}/doc/velda-db-parser ${doc})
    endif()
    file(MAKE_DIRECTORY ${doc})
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc} FILE_PERMISSIONS ${file_modes})
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # as of SOURCE_DATE_EPOCH where it is set
    file(WRITE ${doc}/changelog.Debian
"velda-db-parser (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; changelog.gz in libvelda-db-dev tells what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")
    compress(${doc}/changelog.Debian)
    if(EXISTS ${doc}/CHANGELOG.md)
        file(RENAME ${doc}/CHANGELOG.md ${doc}/changelog)
        compress(${doc}/changelog)
    endif()

    file(GLOB pages ${share}/man/man*/*.[0-9])
    foreach(page IN LISTS pages)
        compress(${page})
    endforeach()

    # CMake strips programs and shared libraries only.
    file(GLOB_RECURSE archives ${root}/*.a)
    foreach(archive IN LISTS archives)
        run(${CPACK_VELDA_STRIP} --strip-debug --enable-deterministic-archives
            --remove-section=.comment ${archive})
        file(CHMOD ${archive} PERMISSIONS ${file_modes})
    endforeach()

    file(GLOB_RECURSE entries LIST_DIRECTORIES true ${root}/*)
    foreach(entry IN LISTS entries)
        if(IS_DIRECTORY ${entry})
            file(CHMOD ${entry} PERMISSIONS ${folder_modes})
        endif()
    endforeach()
endfunction()

foreach(component package IN ZIP_LISTS CPACK_COMPONENTS_ALL CPACK_VELDA_PACKAGES)
    finish(${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component} ${package})
endforeach()
