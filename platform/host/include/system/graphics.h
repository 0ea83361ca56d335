// Host stand-in: pixel formats and data spaces by their public names, with the
// platform's values and in the platform's enumerations (the formats and data
// spaces added in later graphics revisions have enumerations of their own).
#ifndef SYSTEM_GRAPHICS_H
#define SYSTEM_GRAPHICS_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    HAL_PIXEL_FORMAT_RGBA_8888 = 1,
    HAL_PIXEL_FORMAT_RGBX_8888 = 2,
    HAL_PIXEL_FORMAT_RGB_888 = 3,
    HAL_PIXEL_FORMAT_RGB_565 = 4,
    HAL_PIXEL_FORMAT_BGRA_8888 = 5,
    HAL_PIXEL_FORMAT_YCBCR_422_SP = 0x10,
    HAL_PIXEL_FORMAT_YCRCB_420_SP = 0x11,
    HAL_PIXEL_FORMAT_YCBCR_422_I = 0x14,
    HAL_PIXEL_FORMAT_RAW16 = 0x20,
    HAL_PIXEL_FORMAT_BLOB = 0x21,
    HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED = 0x22,
    HAL_PIXEL_FORMAT_YCBCR_420_888 = 0x23,
    HAL_PIXEL_FORMAT_RAW_OPAQUE = 0x24,
    HAL_PIXEL_FORMAT_RAW10 = 0x25,
    HAL_PIXEL_FORMAT_RAW12 = 0x26,
    HAL_PIXEL_FORMAT_Y8 = 0x20203859,
    HAL_PIXEL_FORMAT_Y16 = 0x20363159,
    HAL_PIXEL_FORMAT_YV12 = 0x32315659
} android_pixel_format_t;

typedef enum { HAL_PIXEL_FORMAT_YCBCR_P010 = 0x36 } android_pixel_format_v1_1_t;

typedef enum {
    HAL_DATASPACE_UNKNOWN = 0x0,
    HAL_DATASPACE_ARBITRARY = 0x1,
    HAL_DATASPACE_JFIF = 0x101,
    HAL_DATASPACE_BT601_625 = 0x102,
    HAL_DATASPACE_BT601_525 = 0x103,
    HAL_DATASPACE_BT709 = 0x104,
    HAL_DATASPACE_DEPTH = 0x1000,
    HAL_DATASPACE_SENSOR = 0x1001,
    // Standard BT.601 625 or 525 or BT.709, transfer SMPTE 170M, full or
    // limited range.
    HAL_DATASPACE_V0_JFIF = 0x8C20000,
    HAL_DATASPACE_V0_BT601_625 = 0x10C20000,
    HAL_DATASPACE_V0_BT601_525 = 0x10C40000,
    HAL_DATASPACE_V0_BT709 = 0x10C10000,
    HAL_DATASPACE_BT2020 = 0x8C60000,
    HAL_DATASPACE_BT2020_PQ = 0x9C60000,
    HAL_DATASPACE_DISPLAY_P3 = 0x88A0000
} android_dataspace_t;

typedef enum {
    HAL_DATASPACE_DYNAMIC_DEPTH = 0x1002,
    HAL_DATASPACE_HEIF = 0x1004
} android_dataspace_v1_2_t;

// The older spelling the camera framework still uses.
#define HAL_PIXEL_FORMAT_YCbCr_420_888 HAL_PIXEL_FORMAT_YCBCR_420_888
typedef android_pixel_format_t android_pixel_format;
typedef android_dataspace_t android_dataspace;

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_GRAPHICS_H
