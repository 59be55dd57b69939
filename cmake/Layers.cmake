# The layers of src/, who may include whom, and which library a layer belongs to: one call a layer, lowest first.
#
# A layer is an object library. It sees its own folder and the folders of the layers in its USES (and of theirs), because
# each folder is reached through an include directory of its own, build/include/<layer>/, which holds links to what lies in
# it. An include of anything else is "No such file or directory". A folder in a layer's folder with a CMakeLists.txt of its
# own is another layer, and no part of the outer one.
function(kovalin_add_native_layers)
    kovalin_add_layer(utils          HOT LIBRARY kovalin_learned_search LIBRARIES fmt::fmt kovalin_hard_asserts)
    kovalin_add_layer(learned_search HOT LIBRARY kovalin_learned_search USES utils
                                     LIBRARIES kovalin_search_model_schema)
endfunction()

function(kovalin_add_kit_layers)
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
    # One of each for each way to optimise: a compiler takes none that was made in another.
    foreach(way fast small)
        add_library(kovalin_precompiled_${way} OBJECT EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/precompiled.cpp")
        target_link_libraries(kovalin_precompiled_${way} PRIVATE Qt6::Core kovalin_warnings)
        target_precompile_headers(kovalin_precompiled_${way} PRIVATE ${KOVALIN_PRECOMPILED_HEADERS})
    endforeach()
    target_link_libraries(kovalin_precompiled_fast PRIVATE kovalin_hot_code)
    target_link_libraries(kovalin_precompiled_small PRIVATE kovalin_small_code)
    set(KOVALIN_LAYERS_PRECOMPILED TRUE)
    add_library(kovalin_precompiled_views OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(kovalin_precompiled_views PRIVATE Qt6::Quick kovalin_small_code kovalin_warnings)
    target_precompile_headers(kovalin_precompiled_views PRIVATE
        ${KOVALIN_PRECOMPILED_HEADERS} ${KOVALIN_PRECOMPILED_VIEW_HEADERS})

    kovalin_add_layer(platform/dispatch   LIBRARY QXSDKKovalinKit LIBRARIES Qt6::Core)
    kovalin_add_layer(platform/foundation HOT LIBRARY QXSDKKovalinKit LIBRARIES Qt6::Core Qt6::Gui Qt6::Svg)
    kovalin_add_layer(learned_search/generated-src
        LIBRARY QXSDKKovalinKit USES learned_search platform/foundation LIBRARIES Qt6::Core)
    kovalin_add_layer(platform/net        LIBRARY QXSDKKovalinKit USES platform/dispatch platform/foundation
                                          LIBRARIES Qt6::Core Qt6::Network)
    kovalin_add_layer(platform/store      LIBRARY QXSDKKovalinKit USES platform/dispatch platform/foundation
                                          LIBRARIES Qt6::Core Qt6::Gui SQLiteCpp)
    kovalin_add_layer(platform/ui         LIBRARY QXSDKKovalinKit USES platform/dispatch platform/foundation
                                          LIBRARIES Qt6::Quick PRECOMPILED kovalin_precompiled_views)
    kovalin_add_layer(kits/core           LIBRARY QXSDKKovalinKit USES platform/foundation)
    kovalin_add_layer(kits/core/default   LIBRARY QXSDKKovalinKit USES kits/core platform/dispatch platform/foundation
                                          platform/net LIBRARIES SQLiteCpp)
    kovalin_add_layer(kits/login          LIBRARY QXSDKKovalinKit USES kits/core platform/dispatch platform/foundation)
    kovalin_add_layer(kits/login/ui       LIBRARY QXSDKKovalinKit USES kits/login kits/core platform/dispatch
                                          platform/foundation platform/ui)
    kovalin_add_layer(kits/login/default  LIBRARY QXSDKKovalinKit USES kits/login kits/core platform/dispatch
                                          platform/foundation platform/net
                                          LIBRARIES Qt6::Core Qt6::Gui Qt6::Network qt6keychain)
    kovalin_add_layer(telemetry/base      LIBRARY QXSDKKovalinKit USES kits/core platform/dispatch platform/foundation)
    kovalin_add_layer(search              LIBRARY QXSDKKovalinKit USES platform/dispatch platform/foundation platform/net
                                          kits/core telemetry/base learned_search/generated-src)
    kovalin_add_layer(content             LIBRARY QXSDKKovalinKit USES search kits/login platform/dispatch
                                          platform/foundation platform/net platform/store kits/core telemetry/base)
    kovalin_add_layer(picker/config       LIBRARY QXSDKKovalinKit USES platform/foundation)
    kovalin_add_resources(kovalin_picker_config_objects)
    kovalin_add_layer(telemetry           LIBRARY QXSDKKovalinKit USES search kits/core kits/login telemetry/base
                                          picker/config platform/dispatch platform/foundation)
    kovalin_add_layer(picker              LIBRARY QXSDKKovalinKit USES telemetry content search kits/core kits/login
                                          kits/login/ui telemetry/base picker/config platform/dispatch
                                          platform/foundation platform/ui PRECOMPILED kovalin_precompiled_views)
    kovalin_add_layer(qml                 LIBRARY QXSDKKovalinKit USES picker kits/core/default kits/login/default kits/core
                                          kits/login picker/config platform/dispatch platform/foundation platform/ui
                                          LIBRARIES Qt6::Quick PRECOMPILED kovalin_precompiled_views)
endfunction()

# kovalin_add_layer(<folder below src> [HOT] LIBRARY <library> [USES <layer>…] [LIBRARIES <outside target>…] [PRECOMPILED <target>])
#
# HOT is what is to be fast: what a key stroke goes through. All else is made small, but for its kovalin_hot_sources().
# PRECOMPILED names whose precompiled headers the layer uses, where they aren't those of all layers.
#
# Makes kovalin_<layer>_headers (what a user of the layer may include) and kovalin_<layer>_objects, where <layer> is the
# folder as kovalin_layer_name() writes it. The sources are listed in the folder's own CMakeLists.txt, with
# target_sources(${KOVALIN_LAYER_TARGET} PRIVATE …).
function(kovalin_add_layer folder)
    cmake_parse_arguments(PARSE_ARGV 1 arg "HOT" "LIBRARY;PRECOMPILED" "USES;LIBRARIES")
    kovalin_layer_name(name "${folder}")

    set(include_dir "${CMAKE_BINARY_DIR}/include/${name}")
    kovalin_link_layer("${PROJECT_SOURCE_DIR}/src/${folder}" "${include_dir}" "${folder}")

    add_library(kovalin_${name}_headers INTERFACE)
    target_include_directories(kovalin_${name}_headers INTERFACE "${include_dir}")
    target_link_libraries(kovalin_${name}_headers INTERFACE ${arg_LIBRARY}_generated_headers ${arg_LIBRARIES})
    foreach(used IN LISTS arg_USES)
        kovalin_layer_name(used_name "${used}")
        target_link_libraries(kovalin_${name}_headers INTERFACE kovalin_${used_name}_headers)
    endforeach()

    set(KOVALIN_LAYER_TARGET kovalin_${name}_objects)
    add_library(${KOVALIN_LAYER_TARGET} OBJECT)
    target_link_libraries(${KOVALIN_LAYER_TARGET}
        PUBLIC kovalin_${name}_headers
        PRIVATE $<BUILD_INTERFACE:kovalin_warnings>)
    if(arg_HOT)
        set(way fast)
        target_link_libraries(${KOVALIN_LAYER_TARGET} PRIVATE $<BUILD_INTERFACE:kovalin_hot_code>)
    else()
        set(way small)
        target_link_libraries(${KOVALIN_LAYER_TARGET} PRIVATE $<BUILD_INTERFACE:kovalin_small_code>)
    endif()
    if(KOVALIN_LAYERS_PRECOMPILED AND NOT arg_PRECOMPILED)
        set(arg_PRECOMPILED kovalin_precompiled_${way})
    endif()
    if(arg_PRECOMPILED)
        target_precompile_headers(${KOVALIN_LAYER_TARGET} REUSE_FROM ${arg_PRECOMPILED})
    endif()
    set_property(GLOBAL APPEND PROPERTY ${arg_LIBRARY}_LAYERS ${KOVALIN_LAYER_TARGET})

    add_subdirectory("${PROJECT_SOURCE_DIR}/src/${folder}" "${CMAKE_BINARY_DIR}/layers/${name}")
endfunction()

# kovalin_layer_name(<variable> <folder>): what a folder is called in the names of targets and programs.
function(kovalin_layer_name variable folder)
    string(REGEX REPLACE "[/-]" "_" name "${folder}")
    set(${variable} "${name}" PARENT_SCOPE)
endfunction()

# kovalin_link_layer(<layer's source folder> <include directory> <folder below src>): fills the include directory anew, with a
# link to each header and each folder that belongs to the layer.
function(kovalin_link_layer source_dir include_dir folder)
    # Before anything is put there: what stands in the folder's place may be a link into the sources, from an older build.
    file(REMOVE_RECURSE "${include_dir}")
    file(MAKE_DIRECTORY "${include_dir}/${folder}")
    file(GLOB headers CONFIGURE_DEPENDS "${source_dir}/*.h")
    file(GLOB entries "${source_dir}/*")
    foreach(entry IN LISTS entries)
        cmake_path(GET entry FILENAME entry_name)
        if(entry IN_LIST headers OR (IS_DIRECTORY "${entry}" AND NOT EXISTS "${entry}/CMakeLists.txt"))
            file(CREATE_LINK "${entry}" "${include_dir}/${folder}/${entry_name}" SYMBOLIC)
        endif()
    endforeach()
endfunction()

# kovalin_use_layers(<target> OF <library>): makes the target of the objects of all layers that belong to the library.
function(kovalin_use_layers target of library)
    get_property(layers GLOBAL PROPERTY ${library}_LAYERS)
    foreach(layer IN LISTS layers)
        target_sources(${target} PRIVATE $<TARGET_OBJECTS:${layer}>)
    endforeach()
endfunction()
