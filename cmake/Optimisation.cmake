# What is made fast, and what isn't.

# For code that waits for others more than it works: half as large, and as fast as anybody can tell.
add_library(kovalin_small_code INTERFACE)
target_compile_options(kovalin_small_code INTERFACE
    $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU,Clang,AppleClang>>:-Os>)

# For code that works hard, also in tests: a build that doesn't optimise, as that of the address sanitizer, can make an exception.
set(KOVALIN_HOT_CODE_OPTIONS "" CACHE STRING "Compiler options for what is to be fast, besides those of the build type")
add_library(kovalin_hot_code INTERFACE)
target_compile_options(kovalin_hot_code INTERFACE ${KOVALIN_HOT_CODE_OPTIONS})

# kovalin_hot_sources(<file>…): sources of the layer in the present folder that are made as fast as they can be, among others that
# are small.
function(kovalin_hot_sources)
    list(TRANSFORM ARGN PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" OUTPUT_VARIABLE files)
    set_source_files_properties(${files} TARGET_DIRECTORY ${KOVALIN_LAYER_TARGET} PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON # which are those of the others
        COMPILE_OPTIONS
            "$<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU,Clang,AppleClang>>:-O3>;${KOVALIN_HOT_CODE_OPTIONS}")
endfunction()
