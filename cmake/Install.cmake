include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The tool finds the library beside it, wherever the two are moved together.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
    OUTPUT_VARIABLE libdir_from_bindir)
set_target_properties(hueline-demo PROPERTIES INSTALL_RPATH "$ORIGIN/${libdir_from_bindir}")

install(TARGETS hueline EXPORT HuelineTargets FILE_SET HEADERS)
install(TARGETS hueline-demo)

# find_package(Hueline). A release 0.y is compatible with itself alone.
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Hueline)
configure_package_config_file(cmake/HuelineConfig.cmake.in HuelineConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(HuelineConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(EXPORT HuelineTargets NAMESPACE kestry:: DESTINATION ${package_dir})
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/HuelineConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/HuelineConfigVersion.cmake
    DESTINATION ${package_dir})

# pkg-config. Paths are relative to the file itself, except where a folder was given as an absolute path.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
    OUTPUT_VARIABLE prefix_from_pc)
cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
configure_file(cmake/hueline.pc.in hueline.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/hueline.pc DESTINATION ${pkgconfig_dir})
