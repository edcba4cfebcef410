# What keeps the shared object small and quick to load. What the library refers to of its own is bound to it here: that saves
# entries in the tables that the loader fills, and hosts do not replace single functions of it. What it calls of others is
# called through these entries, without a stub in between.
set(assigned ${PROJECT_SOURCE_DIR}/cmake/assigned.list)
target_compile_options(hueline PRIVATE -fno-plt -fno-semantic-interposition -ffunction-sections $<$<CONFIG:Release>:-O2>)
target_link_options(hueline PRIVATE LINKER:--dynamic-list=${assigned} LINKER:-O1 LINKER:--gc-sections)
set_property(TARGET hueline APPEND PROPERTY LINK_DEPENDS ${assigned})

# Text that is built once in a while need not be built fast.
set_source_files_properties(
    src/stream/templates.cpp
    src/stream/patterns.cpp
    src/stream/banner.cpp
    src/classic/colorizer.cpp
    src/classic/time_stamp.cpp
    src/classic/theme_strings.cpp
    src/classic/theme_streams.cpp
    PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-Os>)

# The strong kind, which the hardening asks for, guards the stack of each function that returns a string: half of the
# instructions of a theme's function. This kind guards those that have an array, and they are all there is to guard here.
set_property(SOURCE
    src/classic/codes.cpp
    src/classic/theme_strings.cpp
    APPEND PROPERTY COMPILE_OPTIONS -fstack-protector)
