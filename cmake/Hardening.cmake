# Hardened as Debian hardens its packages, with immediate binding.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fstack-clash-protection HUELINE_HAS_STACK_CLASH_PROTECTION)
check_cxx_compiler_flag(-fcf-protection HUELINE_HAS_CF_PROTECTION) # x86
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64") # elsewhere clang++ only warns of it
    check_cxx_compiler_flag(-mbranch-protection=standard HUELINE_HAS_BRANCH_PROTECTION)
endif()

add_library(hueline_hardening INTERFACE)
target_compile_options(hueline_hardening INTERFACE
    -fstack-protector-strong
    $<$<BOOL:${HUELINE_HAS_STACK_CLASH_PROTECTION}>:-fstack-clash-protection>
    $<$<BOOL:${HUELINE_HAS_CF_PROTECTION}>:-fcf-protection>
    $<$<BOOL:${HUELINE_HAS_BRANCH_PROTECTION}>:-mbranch-protection=standard>
    -Wformat
    -Werror=format-security)

# A static library hands link options on, and how another project's programs are linked is not ours to choose.
if(PROJECT_IS_TOP_LEVEL OR BUILD_SHARED_LIBS)
    target_link_options(hueline_hardening INTERFACE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
    if(NOT HUELINE_SANITIZE)
        # A sanitizer's functions are found in the program, not in the libraries.
        target_link_options(hueline_hardening INTERFACE LINKER:-z,defs)
    endif()
endif()

if(NOT HUELINE_SANITIZE)
    # The C library checks buffers in optimised code alone, and a sanitizer's own checks come first.
    target_compile_options(hueline_hardening INTERFACE
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
        $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
endif()
