# Installs the library into a folder of its own, builds the consumer against what was installed, and runs it.
# Takes BUILD_DIR, SOURCE_DIR, WORK_DIR, CONFIG and GENERATOR.
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

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/installed" --config "${CONFIG}")
run("${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_DIR}/tests/package" -B "${WORK_DIR}/build"
    "-DCMAKE_PREFIX_PATH=${WORK_DIR}/installed" "-DCMAKE_BUILD_TYPE=${CONFIG}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
    "-DFIRST_SEARCH_SOURCE=${SOURCE_DIR}/tests/docs/FirstSearch.cpp")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build" --config "${CONFIG}")
file(COPY "${SOURCE_DIR}/examples/data/packs-emoji.json" DESTINATION "${WORK_DIR}")
run("${WORK_DIR}/build/first_search")
if(NOT output MATCHES "^[0-9]+ stickers, best tag [a-z]+")
    message(FATAL_ERROR "The consumer printed: ${output}")
endif()

# The README shows the very text that was built.
file(READ "${SOURCE_DIR}/tests/docs/FirstSearch.cpp" source)
string(REGEX MATCH "// \\[example\\]\n(.*)// \\[example\\]" ignored "${source}")
set(example "${CMAKE_MATCH_1}")
file(READ "${SOURCE_DIR}/README.md" readme)
string(FIND "${readme}" "${example}" place)
if(place EQUAL -1)
    message(FATAL_ERROR "README.md doesn't show the example of tests/docs/FirstSearch.cpp as it stands.")
endif()
