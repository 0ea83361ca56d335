# Runs the simulator on one scenario and compares its report with the golden
# file. Variables: SIM, SCENARIO, GOLDEN, OUTPUT and optionally ARGS.
get_filename_component(output_dir "${OUTPUT}" DIRECTORY)
file(MAKE_DIRECTORY "${output_dir}")
execute_process(
    COMMAND "${SIM}" "${SCENARIO}" ${ARGS}
    OUTPUT_FILE "${OUTPUT}"
    ERROR_VARIABLE errors
    RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "uilayer-sim ${SCENARIO} failed (${status}): ${errors}")
endif()
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E compare_files "${OUTPUT}" "${GOLDEN}"
    RESULT_VARIABLE different)
if(NOT different EQUAL 0)
    message(FATAL_ERROR "report of ${SCENARIO} differs from ${GOLDEN}; "
                        "see ${OUTPUT}, or run tools/uilayer-sim/update-golden.sh after a "
                        "deliberate change")
endif()
