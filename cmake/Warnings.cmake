# The warnings that the library, the tool and the tests are free of. CMAKE_COMPILE_WARNING_AS_ERROR makes them errors.
add_library(hueline_warnings INTERFACE)
target_compile_options(hueline_warnings INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wold-style-cast)
