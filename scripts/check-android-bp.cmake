# Fails when the source list of the device build (Android.bp, module
# camera.lumora.uilayer) differs from the library sources CMake builds
# (every .cpp under uilayer/), when a module of Android.bp names a defaults or
# data_libs module the file does not define, or a source file that is not in
# the tree.
# Usage: cmake -DSOURCE_DIR=<checkout> -P check-android-bp.cmake
if(NOT SOURCE_DIR)
    message(FATAL_ERROR "SOURCE_DIR is not set")
endif()

file(READ "${SOURCE_DIR}/Android.bp" bp)
string(FIND "${bp}" "name: \"camera.lumora.uilayer\"" module_at)
if(module_at EQUAL -1)
    message(FATAL_ERROR "Android.bp has no module camera.lumora.uilayer")
endif()
string(SUBSTRING "${bp}" ${module_at} -1 module)
string(FIND "${module}" "srcs: [" srcs_at)
string(SUBSTRING "${module}" ${srcs_at} -1 module)
string(FIND "${module}" "]" srcs_end)
string(SUBSTRING "${module}" 0 ${srcs_end} srcs)
string(REGEX MATCHALL "\"[^\"]+\"" bp_sources "${srcs}")
list(TRANSFORM bp_sources REPLACE "\"" "")
list(SORT bp_sources)

file(GLOB_RECURSE cmake_sources RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/uilayer/*.cpp")
list(SORT cmake_sources)

if(NOT bp_sources STREQUAL cmake_sources)
    set(only_bp ${bp_sources})
    list(REMOVE_ITEM only_bp ${cmake_sources})
    set(only_cmake ${cmake_sources})
    list(REMOVE_ITEM only_cmake ${bp_sources})
    message(FATAL_ERROR "Android.bp and CMake build different sources.\n"
                        "  only in Android.bp: ${only_bp}\n  only in CMake: ${only_cmake}")
endif()
# The values of every list property `name: [...]` of the file.
function(bp_list_values property out)
    string(REGEX MATCHALL "${property}: \\[[^]]*\\]" lists "${bp}")
    set(values "")
    foreach(list IN LISTS lists)
        string(REGEX MATCHALL "\"[^\"]+\"" quoted "${list}")
        list(TRANSFORM quoted REPLACE "\"" "")
        list(APPEND values ${quoted})
    endforeach()
    set(${out} ${values} PARENT_SCOPE)
endfunction()

bp_list_values("defaults" referenced)
bp_list_values("data_libs" data_libs)
foreach(module IN LISTS referenced data_libs)
    string(FIND "${bp}" "name: \"${module}\"" defined_at)
    if(defined_at EQUAL -1)
        message(FATAL_ERROR "Android.bp refers to module ${module}, which it does not define")
    endif()
endforeach()
bp_list_values("srcs" all_sources)
foreach(source IN LISTS all_sources)
    if(NOT source MATCHES "\\*" AND NOT EXISTS "${SOURCE_DIR}/${source}")
        message(FATAL_ERROR "Android.bp builds ${source}, which is not in the tree")
    endif()
endforeach()

list(LENGTH cmake_sources count)
message(STATUS "Android.bp lists the same ${count} library sources as CMake")
