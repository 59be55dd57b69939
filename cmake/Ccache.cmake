# ccache, where it is installed. Precompiled headers are cached only with these two checks relaxed. Paths below the checkout count
# from its root, and the build directory doesn't count. What a source includes is taken from the compiler, so that a new source isn't
# preprocessed first, which would cost a sixth of its compilation.
find_program(KOVALIN_CCACHE ccache)
mark_as_advanced(KOVALIN_CCACHE)
if(KOVALIN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros;CCACHE_BASEDIR=${PROJECT_SOURCE_DIR};CCACHE_NOHASHDIR=true;CCACHE_DEPEND=true;${KOVALIN_CCACHE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess)
    endif()
endif()
