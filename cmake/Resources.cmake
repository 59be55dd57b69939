# What is built into the library: the pictures of resources/pictures, and the texts of resources/translations as what Qt's
# translator reads. Found at run time below ":/QXSDKKovalinKit/", in "pictures" and "translations".

# kovalin_add_resources(<target>): adds them to the target, under the name "kovalin_picker" for Q_INIT_RESOURCE. To be
# called where the target is made: elsewhere it wouldn't know how its source is generated.
function(kovalin_add_resources target)
    file(GLOB pictures CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/resources/pictures/*.svg")
    file(GLOB texts CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/resources/translations/*.ts")
    set(work_dir "${CMAKE_BINARY_DIR}/resources")
    file(MAKE_DIRECTORY "${work_dir}/translations")

    set(files ${pictures})
    foreach(text IN LISTS texts)
        cmake_path(GET text STEM LAST_ONLY language)
        set(translation "${work_dir}/translations/${language}.qm")
        add_custom_command(OUTPUT "${translation}"
            COMMAND Qt6::lrelease -silent -idbased -nounfinished "${text}" -qm "${translation}"
            DEPENDS "${text}"
            COMMENT "Generating ${language}.qm"
            VERBATIM)
        list(APPEND files "${translation}")
    endforeach()

    set(collection "<RCC><qresource prefix=\"/QXSDKKovalinKit\">\n")
    foreach(file IN LISTS files)
        cmake_path(GET file FILENAME name)
        cmake_path(GET file PARENT_PATH folder)
        cmake_path(GET folder FILENAME folder)
        string(APPEND collection "<file alias=\"${folder}/${name}\">${file}</file>\n")
    endforeach()
    string(APPEND collection "</qresource></RCC>\n")
    string(REPLACE "&" "&amp;" collection "${collection}")
    file(CONFIGURE OUTPUT "${work_dir}/kovalin_picker.qrc" CONTENT "${collection}" @ONLY)

    # Not compressed: a Qt for another system may lack what this one compresses with, and all of it is a few ten KB.
    set(source "${work_dir}/kovalin_picker.cpp")
    add_custom_command(OUTPUT "${source}"
        COMMAND Qt6::rcc --name kovalin_picker --no-compress -o "${source}" "${work_dir}/kovalin_picker.qrc"
        DEPENDS "${work_dir}/kovalin_picker.qrc" ${files}
        COMMENT "Generating kovalin_picker.cpp"
        VERBATIM)
    set_source_files_properties("${source}" PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    target_sources(${target} PRIVATE "${source}")
endfunction()
