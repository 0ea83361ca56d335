// Built with the platform's own properties, log and graphics headers: fails to
// compile when a host stand-in of one of them declares something the platform
// does not, or declares it otherwise. The library is tested on the host
// against the stand-ins, so they must say what the device says: the same
// functions with the same signatures, the same enumerators with the same
// values in the same enumerations, the same macros with the same values.
//
// StandInNames.inc and StandInMacros.inc list every name the stand-ins declare
// (cmake/PlatformHeaders.cmake reads them out of the stand-ins).
#include <cutils/properties.h>
#include <log/log.h>
#include <system/graphics.h>

#include <type_traits>

#if !defined(__CUTILS_PROPERTIES_H) || !defined(android_bWriteLog) || \
    !defined(SYSTEM_CORE_INCLUDE_ANDROID_GRAPHICS_H)
#error "the stand-ins, not the platform's own headers, were found first"
#endif

// The platform's values of the macros, before the stand-ins define them anew.
namespace Platform {
#define UILAYER_SAME_ENUMERATOR(type, name)
#define UILAYER_SAME_FUNCTION(name)
#define UILAYER_SAME_ALIAS(alias, type)
#define UILAYER_SAME_MACRO(name) constexpr long long name##_value = name;
#include "StandInNames.inc"
#undef UILAYER_SAME_ENUMERATOR
#undef UILAYER_SAME_FUNCTION
#undef UILAYER_SAME_ALIAS
#undef UILAYER_SAME_MACRO
}  // namespace Platform

#include "StandInMacros.inc"

// The stand-ins' functions are extern "C": declared again here they are the
// platform's functions, and any other signature does not compile.
namespace StandIn {
#include "../host/include/cutils/properties.h"
#include "../host/include/log/log.h"
#include "../host/include/system/graphics.h"

#define UILAYER_SAME_ENUMERATOR(type, name)                                           \
    static_assert(std::is_same<decltype(::name), ::type>::value, #name " in " #type); \
    static_assert(static_cast<long long>(::name) == static_cast<long long>(name), #name);
#define UILAYER_SAME_FUNCTION(name) \
    static_assert(std::is_same<decltype(&::name), decltype(&name)>::value, #name);
#define UILAYER_SAME_ALIAS(alias, type) \
    static_assert(std::is_same<::alias, ::type>::value, #alias " is " #type);
#define UILAYER_SAME_MACRO(name) static_assert(name == Platform::name##_value, #name);
#include "StandInNames.inc"
}  // namespace StandIn
