# Every target of the house is made through these, so that the language level, the include roots and
# the warnings are said once.

option(KESTRIN_WARNINGS_AS_ERRORS "Treat every compiler warning as an error" OFF)

option(KESTRIN_LINT "Run clang-tidy over every source file as it is compiled (needs clang)" OFF)
if(KESTRIN_LINT)
    find_program(CLANG_TIDY clang-tidy REQUIRED)
    set(CMAKE_CXX_CLANG_TIDY ${CLANG_TIDY} --quiet)
endif()

add_library(house-options INTERFACE)
target_compile_features(house-options INTERFACE cxx_std_20)
target_include_directories(house-options INTERFACE
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/Source ${PROJECT_SOURCE_DIR}/Platform/include)

add_library(house-warnings INTERFACE)
target_compile_options(house-warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wimplicit-fallthrough
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    $<$<BOOL:${KESTRIN_WARNINGS_AS_ERRORS}>:-Werror>)

# house_target(NAME): the house's rules for a target made with add_library or add_executable.
function(house_target name)
    target_link_libraries(${name} PUBLIC house-options PRIVATE house-warnings)
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
endfunction()
