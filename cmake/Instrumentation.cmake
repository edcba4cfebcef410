# Sanitizers and coverage apply to the library, the tool and the tests alike.
set(HUELINE_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
option(HUELINE_COVERAGE "Count which lines the tests run" OFF)

if(HUELINE_SANITIZE)
    add_compile_options(-fsanitize=${HUELINE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${HUELINE_SANITIZE})
endif()

if(HUELINE_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic) # threads of a test count at the same time
    add_link_options(--coverage)
    # A test's child ends with _exit and has to write its counts itself.
    add_compile_definitions(HUELINE_COVERAGE)
endif()
