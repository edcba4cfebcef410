# What the sources need of the compiler and its C++ library. Without it the build would end in the middle.
include(CheckCXXSourceCompiles)

function(hueline_check_toolchain)
    if(NOT cxx_std_23 IN_LIST CMAKE_CXX_COMPILE_FEATURES)
        message(FATAL_ERROR "${CMAKE_CXX_COMPILER} knows no C++23, which Hueline is written in: take g++ 12, clang++ 14 or later.")
    endif()

    set(CMAKE_CXX_STANDARD 23)
    check_cxx_source_compiles("
        #include <string>
        int main()
        {
            std::string text;
            text.resize_and_overwrite(1, [](char*, std::size_t) { return 0; });
        }" HUELINE_HAS_RESIZE_AND_OVERWRITE)
    if(NOT HUELINE_HAS_RESIZE_AND_OVERWRITE)
        unset(HUELINE_HAS_RESIZE_AND_OVERWRITE CACHE) # asked again once another library is there
        message(FATAL_ERROR "The C++ library of ${CMAKE_CXX_COMPILER} has no std::string::resize_and_overwrite, "
            "which Hueline needs: take libstdc++ 12 (Debian: libstdc++-12-dev), libc++ 14 or later.")
    endif()
endfunction()
hueline_check_toolchain()
