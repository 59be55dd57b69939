# The layers of src/ and who may include whom: one call a layer, lowest first.
#
# A layer is an object library. It sees its own folder and the folders of the layers in its USES (and of theirs), because
# each folder is reached through an include directory of its own, build/include/<layer>/, which holds a single link to
# it. An include of anything else is "No such file or directory".
function(kovalin_add_layers)
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
    add_library(kovalin_precompiled OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(kovalin_precompiled PRIVATE Qt6::Core kovalin_warnings)
    target_precompile_headers(kovalin_precompiled PRIVATE ${KOVALIN_PRECOMPILED_HEADERS})

    kovalin_add_layer(platform/dispatch   LIBRARIES Qt6::Core)
    kovalin_add_layer(platform/foundation LIBRARIES Qt6::Core Qt6::Gui)
    kovalin_add_layer(search              USES platform/dispatch platform/foundation)
endfunction()

# kovalin_add_layer(<folder below src> [USES <layer>…] [LIBRARIES <outside target>…])
#
# Makes kovalin_<layer>_headers (what a user of the layer may include) and kovalin_<layer> (its objects). The sources are
# listed in the folder's own CMakeLists.txt, with target_sources(${KOVALIN_LAYER_TARGET} PRIVATE …).
function(kovalin_add_layer folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "USES;LIBRARIES")
    string(REPLACE "/" "_" name "${folder}")

    set(include_dir "${CMAKE_BINARY_DIR}/include/${name}")
    cmake_path(GET folder PARENT_PATH parent)
    file(MAKE_DIRECTORY "${include_dir}/${parent}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${folder}" "${include_dir}/${folder}" SYMBOLIC)

    add_library(kovalin_${name}_headers INTERFACE)
    target_include_directories(kovalin_${name}_headers INTERFACE "${include_dir}")
    target_link_libraries(kovalin_${name}_headers INTERFACE kovalin_generated_headers ${arg_LIBRARIES})
    foreach(used IN LISTS arg_USES)
        string(REPLACE "/" "_" used_name "${used}")
        target_link_libraries(kovalin_${name}_headers INTERFACE kovalin_${used_name}_headers)
    endforeach()

    add_library(kovalin_${name} OBJECT)
    target_link_libraries(kovalin_${name}
        PUBLIC kovalin_${name}_headers
        PRIVATE $<BUILD_INTERFACE:kovalin_warnings>)
    target_precompile_headers(kovalin_${name} REUSE_FROM kovalin_precompiled)
    set_property(GLOBAL APPEND PROPERTY KOVALIN_LAYER_TARGETS kovalin_${name})

    set(KOVALIN_LAYER_TARGET kovalin_${name})
    add_subdirectory("${PROJECT_SOURCE_DIR}/src/${folder}" "${CMAKE_BINARY_DIR}/layers/${name}")
endfunction()
