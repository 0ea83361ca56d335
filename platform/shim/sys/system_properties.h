// The platform's property limits for builds that take <cutils/properties.h>
// from the platform's own headers on a host C library: that header sizes its
// buffers from these two constants of the device's C library, which a host C
// library does not ship. Only the two constants are given here; the property
// functions themselves come from <cutils/properties.h>.
#ifndef UILAYER_SHIM_SYS_SYSTEM_PROPERTIES_H
#define UILAYER_SHIM_SYS_SYSTEM_PROPERTIES_H

#define PROP_NAME_MAX 32
#define PROP_VALUE_MAX 92

#endif  // UILAYER_SHIM_SYS_SYSTEM_PROPERTIES_H
