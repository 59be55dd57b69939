# What the build writes for each installed library: its export macro, and the version. Included like every header, as
# "<library>/…".
include(GenerateExportHeader)

set(KOVALIN_GENERATED_INCLUDE_DIR "${CMAKE_BINARY_DIR}/include/generated")

# kovalin_add_generated_headers(<library>): makes <library>_generated_headers, for whatever is compiled into the library.
function(kovalin_add_generated_headers library)
    string(TOUPPER "${library}" macro)
    add_library(${library}_generated_headers INTERFACE)
    target_include_directories(${library}_generated_headers INTERFACE
        $<BUILD_INTERFACE:${KOVALIN_GENERATED_INCLUDE_DIR}/${library}>)
    if(BUILD_SHARED_LIBS)
        target_compile_definitions(${library}_generated_headers INTERFACE ${library}_EXPORTS)
    else()
        target_compile_definitions(${library}_generated_headers INTERFACE ${macro}_STATIC_DEFINE)
    endif()
endfunction()

# kovalin_generate_export_header(<library>): writes <library>/Export.h. To be called once the library's target exists.
function(kovalin_generate_export_header library)
    string(TOUPPER "${library}" macro)
    generate_export_header(${library}
        BASE_NAME ${macro}
        EXPORT_FILE_NAME "${KOVALIN_GENERATED_INCLUDE_DIR}/${library}/${library}/Export.h")
    if(NOT BUILD_SHARED_LIBS)
        target_compile_definitions(${library} PUBLIC ${macro}_STATIC_DEFINE)
    endif()
endfunction()
