// Host stand-in of the platform's system properties.
#ifndef CUTILS_PROPERTIES_H
#define CUTILS_PROPERTIES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define PROPERTY_KEY_MAX 32
#define PROPERTY_VALUE_MAX 92

// Copies the value (or, when the property is unset or empty, the default) into
// `value`, which holds PROPERTY_VALUE_MAX bytes; returns the length copied.
int property_get(const char* key, char* value, const char* default_value);
// 1/y/yes/on/true give 1 and 0/n/no/off/false give 0; anything else gives the
// default. The platform declares it on int8_t, not bool.
int8_t property_get_bool(const char* key, int8_t default_value);
// Decimal, octal or 0x hexadecimal; the default on junk or overflow.
int64_t property_get_int64(const char* key, int64_t default_value);
int32_t property_get_int32(const char* key, int32_t default_value);
// 0 on success; -1 for a null key or a value of PROPERTY_VALUE_MAX bytes or more.
int property_set(const char* key, const char* value);

#ifdef __cplusplus
}
#endif

#endif  // CUTILS_PROPERTIES_H
