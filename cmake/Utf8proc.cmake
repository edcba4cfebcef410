# utf8proc::utf8proc, which knows how wide each character is. Installed beside a static library, whose programs link it too.
if(NOT TARGET utf8proc::utf8proc)
    find_path(HUELINE_UTF8PROC_INCLUDE_DIR utf8proc.h)
    find_library(HUELINE_UTF8PROC_LIBRARY utf8proc)
    mark_as_advanced(HUELINE_UTF8PROC_INCLUDE_DIR HUELINE_UTF8PROC_LIBRARY)
    if(HUELINE_UTF8PROC_INCLUDE_DIR AND HUELINE_UTF8PROC_LIBRARY)
        add_library(utf8proc::utf8proc UNKNOWN IMPORTED GLOBAL)
        set_target_properties(utf8proc::utf8proc PROPERTIES
            IMPORTED_LOCATION ${HUELINE_UTF8PROC_LIBRARY}
            INTERFACE_INCLUDE_DIRECTORIES ${HUELINE_UTF8PROC_INCLUDE_DIR})
    endif()
endif()
