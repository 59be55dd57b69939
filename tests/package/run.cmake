# Installs both libraries into a folder of their own, builds the consumers against what was installed, and runs them.
# Takes BUILD_DIR, SOURCE_DIR, WORK_DIR, CONFIG, GENERATOR and CXX_FLAGS, and QMLLINT, which may be empty.
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")

function(run)
    execute_process(COMMAND ${ARGV} WORKING_DIRECTORY "${WORK_DIR}" RESULT_VARIABLE result OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGV}: ${result}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# build_consumer(<folder> <project's folder> <definition>…)
function(build_consumer folder project)
    run("${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_DIR}/tests/package/${project}" -B "${WORK_DIR}/${folder}"
        "-DCMAKE_PREFIX_PATH=${WORK_DIR}/installed" "-DCMAKE_BUILD_TYPE=${CONFIG}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
        ${ARGN})
    run("${CMAKE_COMMAND}" --build "${WORK_DIR}/${folder}" --config "${CONFIG}")
endfunction()

# The README shows the very text that was built.
function(check_readme_shows source_name)
    file(READ "${SOURCE_DIR}/tests/docs/${source_name}" source)
    string(REGEX MATCH "// \\[example\\]\n(.*)// \\[example\\]" ignored "${source}")
    set(example "${CMAKE_MATCH_1}")
    file(READ "${SOURCE_DIR}/README.md" readme)
    string(FIND "${readme}" "${example}" place)
    if(place EQUAL -1)
        message(FATAL_ERROR "README.md doesn't show the example of tests/docs/${source_name} as it stands.")
    endif()
endfunction()

# extract_files(<document> <folder>): writes each block of code behind a line "<!-- file: NAME -->" as that file.
function(extract_files document folder)
    file(READ "${document}" rest)
    while(rest MATCHES "<!-- file: ([^ \n]+) -->\n```[a-z]*\n")
        set(name "${CMAKE_MATCH_1}")
        set(head "${CMAKE_MATCH_0}")
        string(FIND "${rest}" "${head}" begin)
        string(LENGTH "${head}" length)
        math(EXPR begin "${begin} + ${length}")
        string(SUBSTRING "${rest}" ${begin} -1 rest)
        string(FIND "${rest}" "\n```" length)
        string(SUBSTRING "${rest}" 0 ${length} text)
        file(WRITE "${folder}/${name}" "${text}\n")
    endwhile()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/installed" --config "${CONFIG}")

build_consumer(search . "-DFIRST_SEARCH_SOURCE=${SOURCE_DIR}/tests/docs/FirstSearch.cpp")
file(COPY "${SOURCE_DIR}/examples/data/packs-emoji.json" DESTINATION "${WORK_DIR}")
run("${WORK_DIR}/search/first_search")
if(NOT output MATCHES "^[0-9]+ stickers, best tag [a-z]+")
    message(FATAL_ERROR "The consumer printed: ${output}")
endif()
check_readme_shows(FirstSearch.cpp)

build_consumer(theme . "-DFIRST_SEARCH_SOURCE=${SOURCE_DIR}/tests/docs/FirstTheme.cpp")
run("${WORK_DIR}/theme/first_search")
if(NOT output STREQUAL "de, background #202224\nsearchPillColors cannot be empty!\n")
    message(FATAL_ERROR "The consumer of themes and texts printed: ${output}")
endif()

# The guide's programs, as they stand there. Nothing of a host of theirs is left, and nobody's keychain is looked into.
extract_files("${SOURCE_DIR}/docs/hosting.md" "${WORK_DIR}/hosts")
foreach(road quick widgets)
    file(COPY "${WORK_DIR}/hosts/kits.h" DESTINATION "${WORK_DIR}/hosts/${road}")
endforeach()
if(QMLLINT)
    file(GLOB_RECURSE module_file "${WORK_DIR}/installed/qmldir")
    cmake_path(GET module_file PARENT_PATH import_path)
    cmake_path(GET import_path PARENT_PATH import_path)
    run("${QMLLINT}" -I "${import_path}" "${WORK_DIR}/hosts/qml/Main.qml")
    run("${QMLLINT}" -I "${import_path}" "${SOURCE_DIR}/examples/hosts/qml/Main.qml")
endif()
build_consumer(hosting hosting "-DHOSTS_DIR=${WORK_DIR}/hosts")
foreach(road quick qml widgets)
    run("${CMAKE_COMMAND}" -E env "XDG_CACHE_HOME=${WORK_DIR}/caches" "DBUS_SESSION_BUS_ADDRESS=disabled:"
        QT_QUICK_BACKEND=software "${WORK_DIR}/hosting/${road}_chat")
endforeach()

# Qt can't be found here: the native core must not need it.
build_consumer(prediction native "-DFIRST_PREDICTION_SOURCE=${SOURCE_DIR}/tests/docs/FirstPrediction.cpp"
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON)
run("${WORK_DIR}/prediction/first_prediction" "${SOURCE_DIR}/examples/data/model-emoji.bin")
if(NOT output MATCHES "^[1-9][0-9]* comics, best suggestion birthday c[a-z]+")
    message(FATAL_ERROR "The consumer of the native core printed: ${output}")
endif()
check_readme_shows(FirstPrediction.cpp)
