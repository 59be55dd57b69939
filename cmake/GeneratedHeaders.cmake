# The export macro and the version, written into the build tree and included as "QXSDKKovalinKit/…" like every header.
include(GenerateExportHeader)

set(KOVALIN_GENERATED_INCLUDE_DIR "${CMAKE_BINARY_DIR}/include/generated")
set(KOVALIN_GENERATED_HEADERS
    "${KOVALIN_GENERATED_INCLUDE_DIR}/QXSDKKovalinKit/Export.h"
    "${KOVALIN_GENERATED_INCLUDE_DIR}/QXSDKKovalinKit/Version.h")

configure_file(src/QXSDKKovalinKit/Version.h.in
    "${KOVALIN_GENERATED_INCLUDE_DIR}/QXSDKKovalinKit/Version.h" @ONLY)

# Called by src/QXSDKKovalinKit once the library's target exists.
function(kovalin_generate_export_header target)
    generate_export_header(${target}
        BASE_NAME QXSDKKOVALINKIT
        EXPORT_FILE_NAME "${KOVALIN_GENERATED_INCLUDE_DIR}/QXSDKKovalinKit/Export.h")
endfunction()

add_library(kovalin_generated_headers INTERFACE)
target_include_directories(kovalin_generated_headers INTERFACE
    $<BUILD_INTERFACE:${KOVALIN_GENERATED_INCLUDE_DIR}>)
if(BUILD_SHARED_LIBS)
    target_compile_definitions(kovalin_generated_headers INTERFACE QXSDKKovalinKit_EXPORTS)
else()
    target_compile_definitions(kovalin_generated_headers INTERFACE QXSDKKOVALINKIT_STATIC_DEFINE)
endif()
