# The accessors of the model file, generated from its schema as "learned_search/search_model_generated.h".
find_package(FlatBuffers REQUIRED CONFIG)
if(TARGET flatbuffers::flatc)
    set(KOVALIN_FLATC flatbuffers::flatc)
else()
    find_program(KOVALIN_FLATC flatc REQUIRED)
endif()

set(schema "${PROJECT_SOURCE_DIR}/src/learned_search/search_model.fbs")
set(generated_dir "${CMAKE_BINARY_DIR}/include/search_model_schema")
set(generated_header "${generated_dir}/learned_search/search_model_generated.h")
add_custom_command(OUTPUT "${generated_header}"
    COMMAND ${KOVALIN_FLATC} --cpp --scoped-enums --no-warnings -o "${generated_dir}/learned_search" "${schema}"
    DEPENDS "${schema}"
    COMMENT "Generating search_model_generated.h"
    VERBATIM)
add_custom_target(kovalin_generate_search_model_schema DEPENDS "${generated_header}")

# FlatBuffers is used by its headers alone; nothing of it is linked.
add_library(kovalin_search_model_schema INTERFACE)
target_include_directories(kovalin_search_model_schema SYSTEM INTERFACE
    "${generated_dir}"
    $<TARGET_PROPERTY:flatbuffers::flatbuffers,INTERFACE_INCLUDE_DIRECTORIES>)
target_link_libraries(kovalin_search_model_schema INTERFACE kovalin_hard_asserts)
# Whoever writes a model need not align its fields, and the accessors read them where they are. Told to all that use the
# accessors, since these are inline: the linker keeps one copy of each, whosever it is.
if(KOVALIN_SANITIZE MATCHES "undefined")
    target_compile_options(kovalin_search_model_schema INTERFACE -fno-sanitize=alignment)
endif()
add_dependencies(kovalin_search_model_schema kovalin_generate_search_model_schema)
