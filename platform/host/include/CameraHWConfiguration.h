// Hardware configuration store of the camera HAL: named groups of typed keys.
// Every Get... returns 0 on success and non-zero when the group or key is
// missing (6) or a value does not convert (22). An index is decimal text; the
// "Locale" forms address the key name[index].
#ifndef CAMERA_HW_CONFIGURATION_H
#define CAMERA_HW_CONFIGURATION_H

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

int HasGroupConfiguration(const char* group);
uint32_t GetKeyCount(const char* group);
uint32_t GetValuesCount(const char* group, const char* key);
int GetBooleanConfiguration(const char* group, const char* key, bool* out);
int GetIntegerConfiguration(const char* group, const char* key, int32_t* out);
int GetUIntegerConfiguration(const char* group, const char* key, uint32_t* out);
int GetInt64Configuration(const char* group, const char* key, int64_t* out);
int GetStringConfiguration(const char* group, const char* key, char** out);
int GetUIntegerListConfiguration(const char* group, const char* key, uint32_t* out, uint32_t count);
int GetFloatListConfiguration(const char* group, const char* key, float* out, uint32_t count);
int GetStringListConfiguration(const char* group, const char* key, char** out, uint32_t count);
uint32_t GetLocaleKeyCount(const char* group, const char* name);
uint32_t GetLocaleKeyValuesCount(const char* group, const char* name, const char* index);
int GetLocaleStringConfiguration(const char* group, const char* name, const char* index,
                                 char** out);
int GetLocaleIntegerListConfiguration(const char* group, const char* name, const char* index,
                                      int32_t* out, uint32_t count);
int GetLocaleUIntegerListConfiguration(const char* group, const char* name, const char* index,
                                       uint32_t* out, uint32_t count);
int GetLocaleStringListConfiguration(const char* group, const char* name, const char* index,
                                     char** out, uint32_t count);

#ifdef __cplusplus
}
#endif

#endif  // CAMERA_HW_CONFIGURATION_H
