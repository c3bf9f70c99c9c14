# Runs one scenario: kt500-dtm --script SCRIPT, twice. Passes when both runs
# print the same, the output is SCRIPT's .expected file byte for byte, the
# exit status is the one the script's first line names ("# exit: N", 0 when
# absent) and, when a .stderr file stands beside the script, the error
# output is that file.
#
#   cmake -DPROGRAM=kt500-dtm -DSCRIPT=x.script -P RunScenario.cmake
foreach(var PROGRAM SCRIPT)
    if(NOT DEFINED ${var})
        message(FATAL_ERROR "RunScenario: ${var} is not set")
    endif()
endforeach()

get_filename_component(dir "${SCRIPT}" DIRECTORY)
get_filename_component(stem "${SCRIPT}" NAME_WE)
set(expected_file "${dir}/${stem}.expected")
set(stderr_file "${dir}/${stem}.stderr")

file(STRINGS "${SCRIPT}" first_line LIMIT_COUNT 1)
set(expected_status 0)
if(first_line MATCHES "^# exit: ([0-9]+)")
    set(expected_status "${CMAKE_MATCH_1}")
endif()

foreach(run 1 2)
    execute_process(COMMAND "${PROGRAM}" --script "${SCRIPT}"
                    OUTPUT_VARIABLE out_${run} ERROR_VARIABLE err_${run}
                    RESULT_VARIABLE status_${run})
endforeach()

set(failed FALSE)
if(NOT status_1 STREQUAL expected_status)
    message(SEND_ERROR "exit status ${status_1}, expected ${expected_status}\nstderr:\n${err_1}")
    set(failed TRUE)
endif()
if(NOT out_1 STREQUAL out_2 OR NOT status_1 STREQUAL status_2)
    message(SEND_ERROR "two runs differ:\n--- run 1\n${out_1}\n--- run 2\n${out_2}")
    set(failed TRUE)
endif()
if(EXISTS "${expected_file}")
    file(READ "${expected_file}" expected_out)
    if(NOT out_1 STREQUAL expected_out)
        file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/${stem}.actual" "${out_1}")
        message(SEND_ERROR "output differs from ${stem}.expected:\n--- expected\n"
                           "${expected_out}--- actual\n${out_1}")
        set(failed TRUE)
    endif()
else()
    message(SEND_ERROR "${expected_file} is missing; the output was:\n${out_1}")
    set(failed TRUE)
endif()
if(EXISTS "${stderr_file}")
    file(READ "${stderr_file}" expected_err)
    if(NOT err_1 STREQUAL expected_err)
        message(SEND_ERROR "error output differs from ${stem}.stderr:\n--- expected\n"
                           "${expected_err}--- actual\n${err_1}")
        set(failed TRUE)
    endif()
endif()
if(failed)
    message(FATAL_ERROR "scenario ${stem} failed")
endif()
