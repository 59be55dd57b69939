# Warnings for our own targets; nothing of it reaches a user of the library.
add_library(kovalin_warnings INTERFACE)
target_compile_options(kovalin_warnings INTERFACE
    $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor
        -Woverloaded-virtual>
    $<$<CXX_COMPILER_ID:MSVC>:/W4>)
# GCC 12 takes the standard library's own strings, once inlined, for accesses out of bounds.
target_compile_options(kovalin_warnings INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict -Wno-stringop-overflow
        -Wno-stringop-overread>)
if(KOVALIN_WARNINGS_AS_ERRORS)
    target_compile_options(kovalin_warnings INTERFACE
        $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Werror>
        $<$<CXX_COMPILER_ID:MSVC>:/WX>)
endif()
