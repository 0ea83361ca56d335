// Per-camera record of the sibling camera layer, carried as the payload of its
// vendor tag index 5 in each camera's static characteristics. The documented
// offsets are binary interface and are checked below.
#ifndef LUMORA_CAMERA_INFO_H
#define LUMORA_CAMERA_INFO_H

#include <stddef.h>
#include <stdint.h>

#define LUMORA_MAX_PHYSICAL_CAMERAS 8
#define LUMORA_MAX_SENSOR_MODES 32

// Sensor mode flag: the mode is a quad-Bayer (QCFA) remosaic mode.
#define LUMORA_SENSOR_MODE_FLAG_QCFA 0x800

struct LumoraCameraEntry {
    int32_t logicalCamId;
    int32_t frameworkId;
    uint32_t physicalCamId;
    int32_t isPrimary;
    uint8_t reserved[248];
};

struct LumoraSensorMode {
    uint32_t width;
    uint32_t height;
    uint32_t maxFps;
    uint16_t flags;
    uint16_t reserved;
};

struct LumoraCameraInfo {
    uint32_t logicalCamId;                                       // 0
    uint32_t frameworkId;                                        // 4
    uint32_t numPhysicalCameras;                                 // 8
    uint32_t reserved0;                                          // 12
    LumoraCameraEntry cameraEntry[LUMORA_MAX_PHYSICAL_CAMERAS];  // 16
    uint32_t fullArrayWidth;                                     // 2128
    uint32_t fullArrayHeight;                                    // 2132
    uint32_t numSensorModes;                                     // 2136
    uint32_t reserved1;                                          // 2140
    LumoraSensorMode sensorModes[LUMORA_MAX_SENSOR_MODES];       // 2144
    uint8_t reserved2[3688 - 2144 - 16 * LUMORA_MAX_SENSOR_MODES];
    uint32_t supportFlag;  // 3688: written by the camera layer
    uint32_t type;         // 3692
    uint8_t reserved3[3744 - 3696];
    const char* sensorName;  // 3744
};

#ifdef __cplusplus
static_assert(sizeof(LumoraCameraEntry) == 264, "camera entries are 264 bytes");
static_assert(offsetof(LumoraCameraInfo, logicalCamId) == 0, "logicalCamId at 0");
static_assert(offsetof(LumoraCameraInfo, frameworkId) == 4, "frameworkId at 4");
static_assert(offsetof(LumoraCameraInfo, numPhysicalCameras) == 8, "numPhysicalCameras at 8");
static_assert(offsetof(LumoraCameraInfo, cameraEntry) == 16, "cameraEntry at 16");
static_assert(offsetof(LumoraCameraInfo, supportFlag) == 3688, "supportFlag at 3688");
static_assert(offsetof(LumoraCameraInfo, type) == 3692, "type at 3692");
static_assert(offsetof(LumoraCameraInfo, sensorName) == 3744, "sensorName at 3744");
static_assert(offsetof(LumoraCameraEntry, physicalCamId) == 8, "physicalCamId at 8");
static_assert(offsetof(LumoraCameraEntry, isPrimary) == 12, "isPrimary at 12");
#endif

#endif  // LUMORA_CAMERA_INFO_H
