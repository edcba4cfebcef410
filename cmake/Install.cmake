# Part of another project, the library is installed only if that project asks for it: it may be needed at build alone.
option(HUELINE_INSTALL "Install the library, what is needed to build against it, and the tool" ${PROJECT_IS_TOP_LEVEL})
if(NOT HUELINE_INSTALL)
    return()
endif()

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(libraries hueline)
if(HUELINE_KIT)
    list(APPEND libraries hueline_kit)
endif()
install(TARGETS ${libraries} EXPORT HuelineTargets
    LIBRARY COMPONENT Hueline_Runtime NAMELINK_COMPONENT Hueline_Development
    ARCHIVE COMPONENT Hueline_Development
    FILE_SET HEADERS COMPONENT Hueline_Development)

if(TARGET hueline-demo)
    # The tool finds the library beside it, wherever the two are moved together.
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
        BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
        OUTPUT_VARIABLE libdir_from_bindir)
    set_target_properties(hueline-demo PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bindir}")
    install(TARGETS hueline-demo RUNTIME COMPONENT Hueline_Tools)
endif()

# find_package(Hueline). A release 0.y is compatible with itself alone.
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Hueline)
configure_package_config_file(cmake/HuelineConfig.cmake.in HuelineConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(HuelineConfigVersion.cmake COMPATIBILITY SameMinorVersion)
if(HUELINE_KIT AND NOT BUILD_SHARED_LIBS)
    install(FILES cmake/Utf8proc.cmake DESTINATION ${package_dir} COMPONENT Hueline_Development)
endif()
install(EXPORT HuelineTargets NAMESPACE kestry:: DESTINATION ${package_dir} COMPONENT Hueline_Development)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/HuelineConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/HuelineConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT Hueline_Development)

# pkg-config. Paths are relative to the file itself, except where a folder was given as an absolute path.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE prefix_from_pc)
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
if(NOT BUILD_SHARED_LIBS)
    set(pc_kit_requires_private libutf8proc) # a shared object brings it along
endif()
foreach(library IN LISTS libraries)
    string(REPLACE _ - name ${library})
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Hueline_Development)
endforeach()
