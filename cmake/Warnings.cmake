# kelvobase_warnings(target): the warnings the whole tree is clean under, with GCC and with Clang.
set(KELVOBASE_WARNINGS
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees an overlap, where there can be none, in every optimised `"literal" + text`.
    list(APPEND KELVOBASE_WARNINGS -Wno-restrict)
endif()

function(kelvobase_warnings target)
    target_compile_options(${target} PRIVATE ${KELVOBASE_WARNINGS})
    if(KELVOBASE_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()
