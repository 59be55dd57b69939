# KOVALIN_BUILD_FUZZERS: everything counts what it runs through, so that a fuzzer sees how far an input gets.
if(KOVALIN_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "KOVALIN_BUILD_FUZZERS takes clang, this is ${CMAKE_CXX_COMPILER_ID}; use the preset fuzz.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
