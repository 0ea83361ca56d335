// Host stand-in of the framework's per-camera information record.
#ifndef HARDWARE_CAMERA_COMMON_H
#define HARDWARE_CAMERA_COMMON_H

#include <stddef.h>
#include <stdint.h>
#include <system/camera_metadata.h>

#ifdef __cplusplus
extern "C" {
#endif

#define CAMERA_FACING_BACK 0
#define CAMERA_FACING_FRONT 1
#define CAMERA_FACING_EXTERNAL 2

typedef struct camera_info {
    int facing;
    int orientation;
    uint32_t device_version;
    const camera_metadata_t* static_camera_characteristics;
    int resource_cost;
    char** conflicting_devices;
    size_t conflicting_devices_length;
} camera_info_t;

#ifdef __cplusplus
}
#endif

#endif  // HARDWARE_CAMERA_COMMON_H
