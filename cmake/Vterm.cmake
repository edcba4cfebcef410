# PkgConfig::vterm, the terminal emulator of the tests and the pictures.
find_package(PkgConfig)
if(PkgConfig_FOUND)
    pkg_check_modules(vterm IMPORTED_TARGET vterm)
endif()
if(NOT vterm_FOUND)
    message(FATAL_ERROR "The tests and the pictures need libvterm: install pkgconf and libvterm-dev, or configure with "
        "-DBUILD_TESTING=OFF and -DHUELINE_PICTURES=OFF.")
endif()
