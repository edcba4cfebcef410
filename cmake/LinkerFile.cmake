# hueline_linker_file(<target> <option> <file of cmake/>)
#
# Gives the linker a file. A copy of it, by its path from the folder in which the linker runs: in the path of the sources a
# comma would end the option, and the shell would replace what follows a $.
function(hueline_linker_file target option file)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${file} ${PROJECT_BINARY_DIR}/${file} COPYONLY)
    set(runs_in ${CMAKE_CURRENT_BINARY_DIR})
    if(CMAKE_GENERATOR MATCHES Ninja)
        set(runs_in ${CMAKE_BINARY_DIR})
    endif()
    cmake_path(RELATIVE_PATH PROJECT_BINARY_DIR BASE_DIRECTORY ${runs_in} OUTPUT_VARIABLE folder)
    target_link_options(${target} PRIVATE LINKER:${option}=${folder}/${file})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${PROJECT_BINARY_DIR}/${file})
endfunction()
