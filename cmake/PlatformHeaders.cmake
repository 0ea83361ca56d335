# Where the platform's headers come from.
#
# By default the host stand-ins under platform/host/include provide all of
# them. With UILAYER_REAL_PLATFORM_HEADERS the properties, log and graphics
# interfaces come from the platform's own headers (Debian's
# android-libcutils-dev, android-liblog-dev and
# android-platform-system-core-headers install them under /usr/include/android)
# and the stand-ins provide only what those packages lack: the camera HAL and
# metadata headers, gralloc and the camera layer's own headers. The
# definitions still come from the stand-ins (uilayer_host_platform), which are
# then compiled against the platform's declarations.
#
# Every target that includes a platform header links uilayer_platform_headers
# rather than naming the include directory itself, so that the order holds.

option(UILAYER_REAL_PLATFORM_HEADERS
       "Take cutils/properties.h, log/log.h and system/graphics.h from the platform's own headers"
       OFF)
set(UILAYER_PLATFORM_HEADER_DIR "/usr/include/android" CACHE PATH
    "Directory of the platform's own headers (with UILAYER_REAL_PLATFORM_HEADERS)")

set(UILAYER_STAND_IN_DIR "${PROJECT_SOURCE_DIR}/platform/host/include")
# The stand-ins that have a counterpart among the platform's own headers.
set(UILAYER_REAL_HEADERS cutils/properties.h log/log.h system/graphics.h)

add_library(uilayer_platform_headers INTERFACE)
if(NOT UILAYER_REAL_PLATFORM_HEADERS)
    target_include_directories(uilayer_platform_headers INTERFACE "${UILAYER_STAND_IN_DIR}")
    return()
endif()

foreach(header IN LISTS UILAYER_REAL_HEADERS)
    if(NOT EXISTS "${UILAYER_PLATFORM_HEADER_DIR}/${header}")
        message(FATAL_ERROR "${UILAYER_PLATFORM_HEADER_DIR}/${header} is missing "
                            "(scripts/install-deps.sh installs the platform headers)")
    endif()
endforeach()
# All of them system directories, searched in this order: the platform's own
# headers shadow the stand-ins of the same name. The shim gives what the
# platform's headers expect from the device's C library.
target_include_directories(uilayer_platform_headers SYSTEM INTERFACE
    "${UILAYER_PLATFORM_HEADER_DIR}" "${PROJECT_SOURCE_DIR}/platform/shim" "${UILAYER_STAND_IN_DIR}")

# The names each of those stand-ins declares, for the agreement check: the
# enumerators with the enumeration they belong to, the functions, the macros
# and the type aliases.
set(names "// Generated from the host stand-ins by cmake/PlatformHeaders.cmake.\n")
set(undefs "${names}")
foreach(header IN LISTS UILAYER_REAL_HEADERS)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${UILAYER_STAND_IN_DIR}/${header}")
    file(STRINGS "${UILAYER_STAND_IN_DIR}/${header}" lines)
    set(enumerators "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^    ([A-Z][A-Za-z0-9_]+)( =.*|,)?$")
            list(APPEND enumerators "${CMAKE_MATCH_1}")
        elseif(line MATCHES "^} ([a-z_A-Z0-9]+);$")
            foreach(enumerator IN LISTS enumerators)
                string(APPEND names "UILAYER_SAME_ENUMERATOR(${CMAKE_MATCH_1}, ${enumerator})\n")
            endforeach()
            set(enumerators "")
        elseif(line MATCHES "^[a-z0-9_]+ ([a-z_][a-z0-9_]*)\\(")
            string(APPEND names "UILAYER_SAME_FUNCTION(${CMAKE_MATCH_1})\n")
        elseif(line MATCHES "^#define ([A-Z][A-Za-z0-9_]+) ")
            string(APPEND names "UILAYER_SAME_MACRO(${CMAKE_MATCH_1})\n")
            string(APPEND undefs "#undef ${CMAKE_MATCH_1}\n")
        elseif(line MATCHES "^typedef ([a-z_0-9]+) ([a-z_0-9]+);$")
            string(APPEND names "UILAYER_SAME_ALIAS(${CMAKE_MATCH_2}, ${CMAKE_MATCH_1})\n")
        endif()
    endforeach()
endforeach()
set(names_dir "${PROJECT_BINARY_DIR}/platform-agreement")
file(CONFIGURE OUTPUT "${names_dir}/StandInNames.inc" CONTENT "${names}")
file(CONFIGURE OUTPUT "${names_dir}/StandInMacros.inc" CONTENT "${undefs}")

# Compiled only: it fails to build when a stand-in declares a name the
# platform does not, with another value, type or signature.
add_library(uilayer_platform_agreement OBJECT "${PROJECT_SOURCE_DIR}/platform/check/StandInAgreement.cpp")
target_include_directories(uilayer_platform_agreement PRIVATE "${names_dir}")
target_link_libraries(uilayer_platform_agreement PRIVATE uilayer_platform_headers uilayer_warnings)
