// Host stand-in of the framework's HAL3 structures, with the vendor fields the
// camera HAL appends to the stream record. The offsets of the vendor fields are
// binary interface with the rest of the HAL and are checked below.
#ifndef HARDWARE_CAMERA3_H
#define HARDWARE_CAMERA3_H

#include <stddef.h>
#include <stdint.h>
#include <hardware/camera_common.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct native_handle* buffer_handle_t;

typedef enum camera3_stream_type {
    CAMERA3_STREAM_OUTPUT = 0,
    CAMERA3_STREAM_INPUT = 1,
    CAMERA3_STREAM_BIDIRECTIONAL = 2,
    CAMERA3_NUM_STREAM_TYPES
} camera3_stream_type_t;

typedef enum camera3_stream_rotation {
    CAMERA3_STREAM_ROTATION_0 = 0,
    CAMERA3_STREAM_ROTATION_90 = 1,
    CAMERA3_STREAM_ROTATION_180 = 2,
    CAMERA3_STREAM_ROTATION_270 = 3
} camera3_stream_rotation_t;

typedef enum camera3_stream_configuration_mode {
    CAMERA3_STREAM_CONFIGURATION_NORMAL_MODE = 0,
    CAMERA3_STREAM_CONFIGURATION_CONSTRAINED_HIGH_SPEED_MODE = 1,
    CAMERA3_VENDOR_STREAM_CONFIGURATION_MODE_START = 0x8000
} camera3_stream_configuration_mode_t;

typedef struct camera3_stream {
    int stream_type;                 // 0
    uint32_t width;                  // 4
    uint32_t height;                 // 8
    int format;                      // 12
    uint32_t usage;                  // 16
    uint32_t max_buffers;            // 20
    void* priv;                      // 24
    android_dataspace_t data_space;  // 32
    int rotation;                    // 36
    const char* physical_camera_id;  // 40
    int64_t dynamic_range_profile;   // 48
    int32_t color_space;             // 56
    int32_t reserved0;               // 60
    void* reserved1;                 // 64
    int64_t stream_use_case;         // 72
    uint32_t ext_stream_mode;        // 80: vendor stream mode
    uint32_t ext_stream_flags;       // 84: vendor flags, may be rewritten by the camera layer
    void* reserved[4];               // 88
} camera3_stream_t;

typedef struct camera3_stream_configuration {
    uint32_t num_streams;
    camera3_stream_t** streams;
    uint32_t operation_mode;
    camera_metadata_t* session_parameters;
} camera3_stream_configuration_t;

typedef struct camera3_stream_buffer {
    camera3_stream_t* stream;
    buffer_handle_t* buffer;
    int status;
    int acquire_fence;
    int release_fence;
} camera3_stream_buffer_t;

typedef struct camera3_capture_request {
    uint32_t frame_number;
    const camera_metadata_t* settings;
    camera3_stream_buffer_t* input_buffer;
    uint32_t num_output_buffers;
    const camera3_stream_buffer_t* output_buffers;
    uint32_t num_physcam_settings;
    const char** physcam_id;
    const camera_metadata_t** physcam_settings;
} camera3_capture_request_t;

typedef struct camera3_capture_result {
    uint32_t frame_number;
    const camera_metadata_t* result;
    uint32_t num_output_buffers;
    const camera3_stream_buffer_t* output_buffers;
    const camera3_stream_buffer_t* input_buffer;
    uint32_t partial_result;
    uint32_t num_physcam_metadata;
    const char** physcam_ids;
    const camera_metadata_t** physcam_metadata;
} camera3_capture_result_t;

#ifdef __cplusplus
}  // extern "C"

static_assert(sizeof(void*) != 8 || offsetof(camera3_stream_t, physical_camera_id) == 40,
              "physical_camera_id must be at offset 40");
static_assert(sizeof(void*) != 8 || offsetof(camera3_stream_t, dynamic_range_profile) == 48,
              "dynamic_range_profile must be at offset 48");
static_assert(sizeof(void*) != 8 || offsetof(camera3_stream_t, stream_use_case) == 72,
              "stream_use_case must be at offset 72");
static_assert(sizeof(void*) != 8 || offsetof(camera3_stream_t, ext_stream_mode) == 80,
              "ext_stream_mode must be at offset 80");
static_assert(sizeof(void*) != 8 || offsetof(camera3_stream_t, ext_stream_flags) == 84,
              "ext_stream_flags must be at offset 84");
static_assert(offsetof(camera3_stream_t, data_space) == 32 || sizeof(void*) != 8,
              "data_space must be at offset 32");
static_assert(sizeof(android_dataspace_t) == 4, "data spaces are 32-bit");
#endif

#endif  // HARDWARE_CAMERA3_H
