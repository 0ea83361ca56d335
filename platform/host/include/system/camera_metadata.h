// Host stand-in of the framework's camera metadata library.
//
// One buffer holds a header, an entry table and a data area. Every entry's data
// starts on an 8-byte boundary so that records holding pointers can be read in
// place, as the vendor records of the sibling camera layer are.
#ifndef SYSTEM_CAMERA_METADATA_H
#define SYSTEM_CAMERA_METADATA_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct camera_metadata camera_metadata_t;

typedef struct camera_metadata_rational {
    int32_t numerator;
    int32_t denominator;
} camera_metadata_rational_t;

enum {
    TYPE_BYTE = 0,
    TYPE_INT32 = 1,
    TYPE_FLOAT = 2,
    TYPE_INT64 = 3,
    TYPE_DOUBLE = 4,
    TYPE_RATIONAL = 5,
    NUM_TYPES
};

typedef struct camera_metadata_entry {
    size_t index;
    uint32_t tag;
    uint8_t type;
    size_t count;
    union {
        uint8_t* u8;
        int32_t* i32;
        float* f;
        int64_t* i64;
        double* d;
        camera_metadata_rational_t* r;
    } data;
} camera_metadata_entry_t;

typedef struct camera_metadata_ro_entry {
    size_t index;
    uint32_t tag;
    uint8_t type;
    size_t count;
    union {
        const uint8_t* u8;
        const int32_t* i32;
        const float* f;
        const int64_t* i64;
        const double* d;
        const camera_metadata_rational_t* r;
    } data;
} camera_metadata_ro_entry_t;

// Size in bytes of one element of each type.
extern const size_t camera_metadata_type_size[NUM_TYPES];

// Section layout of the standard tags used by the camera layer.
enum {
    ANDROID_CONTROL_START = 1 << 16,
    ANDROID_SENSOR_START = 14 << 16,
    VENDOR_SECTION_START = (int32_t)0x80000000u
};

// Standard tags (only those the camera layer and its host tools use).
enum {
    ANDROID_CONTROL_AE_ANTIBANDING_MODE = 0x10000,
    ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION = 0x10001,
    ANDROID_CONTROL_AE_LOCK = 0x10002,
    ANDROID_CONTROL_AE_MODE = 0x10003,
    ANDROID_CONTROL_AE_REGIONS = 0x10004,
    ANDROID_CONTROL_AE_TARGET_FPS_RANGE = 0x10005,
    ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER = 0x10006,
    ANDROID_CONTROL_AF_MODE = 0x10007,
    ANDROID_CONTROL_AF_TRIGGER = 0x10009,
    ANDROID_CONTROL_AWB_MODE = 0x1000B,
    ANDROID_CONTROL_CAPTURE_INTENT = 0x1000D,
    ANDROID_CONTROL_EFFECT_MODE = 0x1000E,
    ANDROID_CONTROL_MODE = 0x1000F,
    ANDROID_CONTROL_SCENE_MODE = 0x10010,
    ANDROID_CONTROL_VIDEO_STABILIZATION_MODE = 0x10011,
    ANDROID_CONTROL_ZOOM_RATIO = 0x1002F,
    ANDROID_SENSOR_EXPOSURE_TIME = 0xE0000,
    ANDROID_SENSOR_FRAME_DURATION = 0xE0001,
    ANDROID_SENSOR_SENSITIVITY = 0xE0002
};

// Return codes: 0 success, NOT_FOUND-like -ENOENT for a missing entry, 1 for any
// other error (full buffer, unknown tag, wrong arguments).
// `data_capacity` is in bytes and includes the padding that puts each entry's
// data on an 8-byte boundary: size it as the sum of the entries' data sizes,
// each but the last rounded up to a multiple of 8.
camera_metadata_t* allocate_camera_metadata(size_t entry_capacity, size_t data_capacity);
void free_camera_metadata(camera_metadata_t* metadata);
camera_metadata_t* clone_camera_metadata(const camera_metadata_t* src);

size_t get_camera_metadata_entry_count(const camera_metadata_t* metadata);
size_t get_camera_metadata_entry_capacity(const camera_metadata_t* metadata);
size_t get_camera_metadata_data_count(const camera_metadata_t* metadata);
size_t get_camera_metadata_data_capacity(const camera_metadata_t* metadata);

// Size in bytes of `data_count` elements of `type`; 0 for an unknown type.
size_t calculate_camera_metadata_entry_data_size(uint8_t type, size_t data_count);

// Type of a tag, -1 when the tag is unknown.
int get_camera_metadata_tag_type(uint32_t tag);

int add_camera_metadata_entry(camera_metadata_t* dst, uint32_t tag, const void* data,
                              size_t data_count);
int get_camera_metadata_entry(camera_metadata_t* src, size_t index, camera_metadata_entry_t* entry);
int get_camera_metadata_ro_entry(const camera_metadata_t* src, size_t index,
                                 camera_metadata_ro_entry_t* entry);
int find_camera_metadata_entry(camera_metadata_t* src, uint32_t tag,
                               camera_metadata_entry_t* entry);
int find_camera_metadata_ro_entry(const camera_metadata_t* src, uint32_t tag,
                                  camera_metadata_ro_entry_t* entry);
int update_camera_metadata_entry(camera_metadata_t* dst, size_t index, const void* data,
                                 size_t data_count, camera_metadata_entry_t* updated_entry);
int delete_camera_metadata_entry(camera_metadata_t* dst, size_t index);

#ifdef __cplusplus
}
#endif

#endif  // SYSTEM_CAMERA_METADATA_H
