# liblzma for those who only decode: FindLibLZMA does not accept one that was built without its
# encoders, as those of small devices are. Makes LibLZMA::LibLZMA as FindLibLZMA does, from the same
# variables, unless it is not found.
if(NOT TARGET LibLZMA::LibLZMA)
    find_path(LIBLZMA_INCLUDE_DIR lzma.h)
    find_library(LIBLZMA_LIBRARY NAMES lzma liblzma)
    mark_as_advanced(LIBLZMA_INCLUDE_DIR LIBLZMA_LIBRARY)
    if(LIBLZMA_INCLUDE_DIR AND LIBLZMA_LIBRARY)
        add_library(LibLZMA::LibLZMA UNKNOWN IMPORTED)
        set_target_properties(LibLZMA::LibLZMA PROPERTIES
            INTERFACE_INCLUDE_DIRECTORIES "${LIBLZMA_INCLUDE_DIR}"
            IMPORTED_LINK_INTERFACE_LANGUAGES C
            IMPORTED_LOCATION "${LIBLZMA_LIBRARY}")
    endif()
endif()
