# Fails when DOC differs from what GENERATOR prints.
# Usage: cmake -DGENERATOR=<capabilities-doc> -DDOC=<docs/capabilities.md> -P CompareDoc.cmake
execute_process(COMMAND "${GENERATOR}" OUTPUT_VARIABLE generated RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${GENERATOR} failed (${status})")
endif()
file(READ "${DOC}" checked_in)
if(NOT generated STREQUAL checked_in)
    message(FATAL_ERROR "${DOC} is not the page the capability table generates; "
                        "regenerate it with: build/tools/capabilities/capabilities-doc > docs/capabilities.md")
endif()
