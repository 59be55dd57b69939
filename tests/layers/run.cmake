# Whether the build refuses an include from a layer above, or of another's: compiles a file as the layer would be.
# Takes COMPILER, INCLUDES (a list), WORK_DIR, ALLOWED (a header) and REFUSED (headers).
file(MAKE_DIRECTORY "${WORK_DIR}")
list(TRANSFORM INCLUDES PREPEND "-I")

function(compile text result_variable)
    file(WRITE "${WORK_DIR}/probe.cpp" "${text}\n")
    execute_process(COMMAND "${COMPILER}" -std=c++20 -fPIC ${INCLUDES} -fsyntax-only "${WORK_DIR}/probe.cpp"
        RESULT_VARIABLE result ERROR_VARIABLE errors)
    set(${result_variable} "${result}" PARENT_SCOPE)
    set(errors "${errors}" PARENT_SCOPE)
endfunction()

compile("#include \"${ALLOWED}\"" allowed)
if(NOT allowed EQUAL 0)
    message(FATAL_ERROR "The layer doesn't see ${ALLOWED}:\n${errors}")
endif()
foreach(header IN LISTS REFUSED)
    compile("#include \"${header}\"" refused)
    if(refused EQUAL 0 OR NOT errors MATCHES "No such file|file not found")
        message(FATAL_ERROR "An include of ${header} was not refused.\n${errors}")
    endif()
endforeach()
