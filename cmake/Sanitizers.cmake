# kelvobase_instrument(target): sanitizers or coverage counters, as the build asks for them.
function(kelvobase_instrument target)
    if(KELVOBASE_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(KELVOBASE_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage -O0)
        target_link_options(${target} PRIVATE --coverage)
    endif()
endfunction()
