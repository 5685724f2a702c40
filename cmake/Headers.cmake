# Where headers are found while this project is built, alone or inside another one.

# A project around this one may have folders of the same names on the path of all its targets.
include_directories(BEFORE ${PROJECT_SOURCE_DIR} ${VELDA_GENERATED})

# Programs that are built along with the libraries can write <velda-db/xmlp/xmlp.h> as those can that use
# installed ones: these headers include the true ones. Called when all libraries are known.
function(velda_forward_headers)
    foreach(library common xmlp quelm appmngr)
        if(NOT TARGET velda_${library})
            continue()
        endif()
        get_target_property(headers velda_${library} HEADER_SET)
        if(library STREQUAL "common")
            list(APPEND headers ${VELDA_GENERATED}/common/version.h)
        endif()
        foreach(header IN LISTS headers)
            cmake_path(GET header FILENAME name)
            cmake_path(GET header PARENT_PATH folder)
            cmake_path(GET folder FILENAME folder)
            file(CONFIGURE OUTPUT ${VELDA_GENERATED}/velda-db/${folder}/${name}
                CONTENT "#include \"${header}\"\n" @ONLY)
        endforeach()
        target_include_directories(velda_${library} INTERFACE $<BUILD_INTERFACE:${VELDA_GENERATED}>)
    endforeach()
endfunction()
cmake_language(DEFER CALL velda_forward_headers)
