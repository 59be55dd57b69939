# The example model is valid, and the one that kovalin makes of the example pairs.
cmake_minimum_required(VERSION 3.25)
set(model "${CONTENT_DIR}/models/LearnedSearch/1.bin")
set(made "${WORK_DIR}/made-model.bin")
execute_process(COMMAND "${KOVALIN}" model verify "${model}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${KOVALIN}" model build --pairs "${CONTENT_DIR}/pairs.tsv" --out "${made}" COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${model}" "${made}" RESULT_VARIABLE differ)
if(differ)
    message(FATAL_ERROR "${model} is not what kovalin model build makes of pairs.tsv")
endif()

# What people type most brings what they mean, at the top.
foreach(pair "happy birthday=30006001,30010012" "good night=30001009,30010021" "love you=30002001" "thank you=30005008"
        "high five=30010001" "coffee=30007004,30010011")
    string(REPLACE "=" ";" pair "${pair}")
    list(GET pair 0 query)
    list(GET pair 1 wanted)
    string(REPLACE "," ";" wanted "${wanted}")
    execute_process(COMMAND "${KOVALIN}" predict --model "${model}" --top 1 --json "${query}"
        OUTPUT_VARIABLE answer COMMAND_ERROR_IS_FATAL ANY)
    string(JSON first GET "${answer}" comics 0)
    if(NOT first IN_LIST wanted)
        message(FATAL_ERROR "\"${query}\" brings ${first} first, not one of ${wanted}")
    endif()
endforeach()
