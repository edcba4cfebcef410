# Debian packages, made by script/package. What they bring beside the installed files is in packages/.
set(sources ${PROJECT_SOURCE_DIR}/packages)

if(BUILD_TESTING)
    add_test(NAME packages/symbols COMMAND bash ${PROJECT_SOURCE_DIR}/tests/packages/symbols.sh
        ${PROJECT_SOURCE_DIR}/tests/api/exports.txt ${sources}/libhueline0.2.symbols)
endif()

option(HUELINE_PACKAGES "Install what Debian packages have beside the other files" OFF)
if(NOT HUELINE_PACKAGES)
    return()
endif()

set(made ${PROJECT_BINARY_DIR}/packages)
set(revision 0kestry1) # before -1, which a package of Debian's own would start with
file(MAKE_DIRECTORY ${made})

# ---------------------------------------------------------------------------------------------
# The packages
# ---------------------------------------------------------------------------------------------

# Packages have their documents compressed, without the time of day.
find_program(GZIP_COMMAND gzip REQUIRED)
set(gzip ${GZIP_COMMAND} --best --no-name)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sources}/changelog)
execute_process(COMMAND ${gzip} INPUT_FILE ${sources}/changelog OUTPUT_FILE ${made}/changelog.Debian.gz
    COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN ITEMS Hueline_Development Hueline_Tools)
    install(CODE "
        file(GLOB pages \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man*/hueline*.[1-9])
        execute_process(COMMAND ${gzip} --force \${pages} COMMAND_ERROR_IS_FATAL ANY)"
        COMPONENT ${component})
endforeach()

# hueline_package(<component> <package> <section> <description> [<component needed>...])
function(hueline_package component package section description)
    install(FILES ${sources}/copyright ${made}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package} COMPONENT ${component})

    string(TOUPPER ${component} component)
    set(CPACK_DEBIAN_${component}_PACKAGE_NAME ${package} PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${component}_DESCRIPTION ${description} PARENT_SCOPE)
    set(CPACK_COMPONENT_${component}_DEPENDS ${ARGN} PARENT_SCOPE)
endfunction()

set(what_it_is "Hueline lets command-line programs colour and decorate what they print to a
text terminal: colours and styles, cursor controls, hex dumps, time stamps,
progress meters and a vocabulary of semantic styles. A standard stream receives
escape sequences only while it is a terminal.
")

hueline_package(Hueline_Runtime libhueline0.2 libs
    "terminal colour for command-line tools (shared library)
${what_it_is}
This package holds what programs that use the library need to run.")

hueline_package(Hueline_Development libhueline-dev libdevel
    "terminal colour for command-line tools (development files)
${what_it_is}
This package holds what is needed to build such programs: the headers, and the
files by which CMake and pkg-config find the library."
    Hueline_Runtime)

hueline_package(Hueline_Tools hueline-tools utils
    "terminal colour for command-line tools (demonstration)
${what_it_is}
This package holds hueline-demo, which shows what a terminal makes of all of it
and dumps files in hexadecimal."
    Hueline_Runtime)

set(CPACK_COMPONENTS_ALL Hueline_Runtime Hueline_Development Hueline_Tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

# ---------------------------------------------------------------------------------------------
# The control files
# ---------------------------------------------------------------------------------------------

# The symbols that the packages of other programs may rely on. An export that is missing here, or is not exported, ends
# the build.
find_program(DPKG_GENSYMBOLS_COMMAND dpkg-gensymbols REQUIRED)
add_custom_command(OUTPUT ${made}/symbols
    COMMAND ${DPKG_GENSYMBOLS_COMMAND} -c4 -plibhueline0.2 -v${PROJECT_VERSION}-${revision}
        -I${sources}/libhueline0.2.symbols -e$<TARGET_FILE:hueline> -O${made}/symbols
    DEPENDS hueline ${sources}/libhueline0.2.symbols
    VERBATIM)
add_custom_target(hueline_symbols ALL DEPENDS ${made}/symbols)

file(WRITE ${made}/triggers "activate-noawait ldconfig\n")

# The trigger does what CPack's own scripts would do. It writes them unless these files are named, and leaves out files
# that are not there.
set(no_scripts ${made}/postinst ${made}/postrm)
set(CPACK_DEBIAN_HUELINE_RUNTIME_PACKAGE_CONTROL_EXTRA ${made}/symbols ${made}/triggers ${no_scripts})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}) # the tool's library is not installed yet
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

# ---------------------------------------------------------------------------------------------
# What they have in common
# ---------------------------------------------------------------------------------------------

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME hueline)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Kestry <hueline@kestry.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_DEBIAN_PACKAGE_SOURCE hueline)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${revision})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of whoever builds them.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
