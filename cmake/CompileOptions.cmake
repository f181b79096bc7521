# What every target of the project is compiled with.
add_library(memdata_flags INTERFACE)
target_compile_options(memdata_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
    -Wcast-qual -Wformat=2 -Werror
    -Wno-psabi # notes on calls that older compilers laid out otherwise: everything here is built by one
    # __FILE__ is relative to the tree, so that no block records where it was built.
    # The second form is what a compiler cache makes of the first, seen from build/<preset>.
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=../../=)
if(MEMDATA_SANITIZE)
    target_compile_options(memdata_flags INTERFACE
        -fsanitize=${MEMDATA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # The checks put into the code make these see what is not there, in the standard library's headers.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-array-bounds>)
    target_link_options(memdata_flags INTERFACE -fsanitize=${MEMDATA_SANITIZE})
endif()
if(MEMDATA_FUZZ)
    target_compile_options(memdata_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

function(memdata_compile_options target)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:memdata_flags>)
endfunction()

# Line counts are taken of the library and the tool; tests are compiled as ever.
function(memdata_count_lines target)
    if(MEMDATA_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage)
        target_link_options(${target} PRIVATE --coverage)
    endif()
endfunction()
