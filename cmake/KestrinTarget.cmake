# SPDX-License-Identifier: MIT
# Every target of the project is made through these, so that the language level, the include roots and
# the warnings are said once.

option(KESTRIN_WARNINGS_AS_ERRORS "Treat every compiler warning as an error" OFF)

option(KESTRIN_LINT "Run clang-tidy over every source file as it is compiled (needs clang)" OFF)
if(KESTRIN_LINT)
    find_program(CLANG_TIDY clang-tidy REQUIRED)
    set(CMAKE_CXX_CLANG_TIDY ${CLANG_TIDY} --quiet)
endif()

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection KESTRIN_HAS_CONTROL_FLOW_PROTECTION)

# kestrin_target(NAME): the project's rules for a target made with add_library or add_executable.
function(kestrin_target name)
    target_compile_features(${name} PRIVATE cxx_std_20)
    target_compile_options(${name} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wimplicit-fallthrough
        $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
        $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
        $<$<BOOL:${KESTRIN_WARNINGS_AS_ERRORS}>:-Werror>)
    # Hardening; the C library's checks need an optimising build.
    target_compile_options(${name} PRIVATE
        -fstack-protector-strong
        $<$<BOOL:${KESTRIN_HAS_CONTROL_FLOW_PROTECTION}>:-fcf-protection>
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>)
    target_link_options(${name} PRIVATE -Wl,-z,relro,-z,now)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()

# kestrin_root(TARGET SCOPE BASE FOLDER...): an include root that holds these folders of BASE and nothing
# else. What neither a target nor what it links has a root for, its files cannot include.
function(kestrin_root target scope base)
    set(root ${PROJECT_BINARY_DIR}/roots/${target}-${scope})
    foreach(folder IN LISTS ARGN)
        cmake_path(GET folder PARENT_PATH parent)
        file(MAKE_DIRECTORY ${root}/${parent})
        file(CREATE_LINK ${base}/${folder} ${root}/${folder} SYMBOLIC)
    endforeach()
    target_include_directories(${target} ${scope} $<BUILD_INTERFACE:${root}>)
endfunction()
