# Fails when the library LIBRARY defines a symbol of the host trace
# (Lumora::Trace): the device build must be compiled without UILAYER_TRACE.
# Usage: cmake -DNM=<nm> -DLIBRARY=<lib> -P CheckNoTraceSymbols.cmake
execute_process(COMMAND "${NM}" -C --defined-only "${LIBRARY}"
                OUTPUT_VARIABLE symbols RESULT_VARIABLE status)
if(NOT status EQUAL 0 OR symbols STREQUAL "")
    message(FATAL_ERROR "cannot list the symbols of ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]*Lumora::Trace[^\n]*" traced "${symbols}")
if(traced)
    list(JOIN traced "\n" traced)
    message(FATAL_ERROR "${LIBRARY} carries trace symbols:\n${traced}")
endif()
