// What the library tells from a configured stream's record: its direction,
// usage, format class, data space, vendor stream use case and HDR profile.
// Every test on the kind of a stream is written here once; the session, the
// bokeh and zoom steps and the stream classification all ask these.
#ifndef LUMORA_STREAM_PREDICATES_H
#define LUMORA_STREAM_PREDICATES_H

#include <hardware/camera3.h>
#include <hardware/gralloc.h>
#include <system/graphics.h>

#include <cstdint>
#include <cstring>

namespace Lumora {

// The platform values the stream rules were written for.
static_assert(HAL_PIXEL_FORMAT_RAW16 == 0x20 && HAL_PIXEL_FORMAT_BLOB == 0x21 &&
                  HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED == 0x22 &&
                  HAL_PIXEL_FORMAT_YCbCr_420_888 == 0x23 && HAL_PIXEL_FORMAT_RAW_OPAQUE == 0x24 &&
                  HAL_PIXEL_FORMAT_RAW10 == 0x25 && HAL_PIXEL_FORMAT_RAW12 == 0x26 &&
                  HAL_PIXEL_FORMAT_YCBCR_P010 == 0x36,
              "pixel formats");
static_assert(HAL_DATASPACE_JFIF == 0x101 && HAL_DATASPACE_DEPTH == 0x1000 &&
                  HAL_DATASPACE_HEIF == 0x1004 && HAL_DATASPACE_V0_JFIF == 0x8C20000,
              "data spaces");
static_assert(GRALLOC_USAGE_PRIVATE_2 == 0x40000000, "private usage bit");

// Usage bits that the platform leaves to the vendor: a video stream that does
// not go to the encoder, and a raw-format buffer that carries metadata.
constexpr uint32_t kUsageVendorVideo = 0x80;
constexpr uint32_t kUsageVendorMetadata = 0x40;

// Usage of a stream shown on screen, and of a video stream.
constexpr uint32_t kUsagePreview = GRALLOC_USAGE_HW_TEXTURE | GRALLOC_USAGE_HW_COMPOSER;
constexpr uint32_t kUsageVideo = GRALLOC_USAGE_HW_VIDEO_ENCODER | kUsageVendorVideo;
static_assert(kUsagePreview == 0x900 && kUsageVideo == 0x10080, "usage masks");

// Vendor stream use cases (the 64-bit stream_use_case of the stream record).
constexpr int64_t kStreamUseCaseMultiSpectral = 0x0080000000010000;
constexpr int64_t kStreamUseCaseMultiSpectralAux = 0x0400000000010001;
constexpr int64_t kStreamUseCaseRawFull = 0x0400000000010000;
constexpr int64_t kStreamUseCaseRawShort = 0x0800000000010000;
constexpr int64_t kStreamUseCaseRawMiddle = 0x0800000000080000;

// The framework's dynamic range profiles of HDR video: HLG10, HDR10, HDR10+.
constexpr int64_t kDynamicRangeHlg10 = 0x2;
constexpr int64_t kDynamicRangeHdr10 = 0x4;
constexpr int64_t kDynamicRangeHdr10Plus = 0x8;

// The data space of a stream as the 32-bit value the framework wrote. Its
// enumeration names only some of the values a stream may carry, and loading
// any other value through the enumeration type is undefined: the field is
// read through its bytes instead.
inline int32_t StreamDataSpace(const camera3_stream& s) {
    int32_t value = 0;
    memcpy(&value, &s.data_space, sizeof(value));
    return value;
}

inline bool IsOutputStream(const camera3_stream& s) {
    return s.stream_type == CAMERA3_STREAM_OUTPUT;
}

// Shown on screen (texture or composer) and not encoded.
inline bool HasPreviewUsage(const camera3_stream& s) {
    return (s.usage & kUsagePreview) != 0 && (s.usage & GRALLOC_USAGE_HW_VIDEO_ENCODER) == 0;
}

// Encoded, or marked as video by the vendor.
inline bool HasVideoUsage(const camera3_stream& s) {
    return (s.usage & kUsageVideo) != 0;
}

// The formats a preview or YUV stream comes in.
inline bool IsYuvClass(const camera3_stream& s) {
    return s.format == HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED ||
           s.format == HAL_PIXEL_FORMAT_YCbCr_420_888 || s.format == HAL_PIXEL_FORMAT_YCBCR_P010;
}

inline bool IsDepthOrHeif(const camera3_stream& s) {
    const int32_t dataSpace = StreamDataSpace(s);
    return dataSpace == HAL_DATASPACE_DEPTH || dataSpace == HAL_DATASPACE_HEIF;
}

// An output stream for the preview path: preview usage, YUV class, no depth
// or HEIF data.
inline bool IsPreviewYuv(const camera3_stream& s) {
    return IsOutputStream(s) && HasPreviewUsage(s) && !IsDepthOrHeif(s) && IsYuvClass(s);
}

// A video stream: video usage on anything but a HEIF stream (depth streams
// count).
inline bool IsVideoStream(const camera3_stream& s) {
    return HasVideoUsage(s) && StreamDataSpace(s) != HAL_DATASPACE_HEIF;
}

inline bool IsMultiSpectralUseCase(const camera3_stream& s) {
    return s.stream_use_case == kStreamUseCaseMultiSpectral ||
           s.stream_use_case == kStreamUseCaseMultiSpectralAux;
}

// A raw stream as the session counts raw streams: RAW16 that carries pixels
// of an ordinary camera, RAW10 or RAW12.
inline bool IsRaw(const camera3_stream& s) {
    return (s.format == HAL_PIXEL_FORMAT_RAW16 && (s.usage & kUsageVendorMetadata) == 0 &&
            !IsMultiSpectralUseCase(s)) ||
           s.format == HAL_PIXEL_FORMAT_RAW10 || s.format == HAL_PIXEL_FORMAT_RAW12;
}

// Wider than IsRaw on purpose: opaque raw counts, RAW10/12 need the usage test.
inline bool IsQcfaRawCandidate(const camera3_stream& s) {
    return !IsMultiSpectralUseCase(s) && (s.usage & kUsageVendorMetadata) == 0 &&
           (s.format == HAL_PIXEL_FORMAT_RAW16 || s.format == HAL_PIXEL_FORMAT_RAW_OPAQUE ||
            s.format == HAL_PIXEL_FORMAT_RAW10 || s.format == HAL_PIXEL_FORMAT_RAW12);
}

// A short- or middle-exposure raw stream of a staggered readout.
inline bool IsShortRawStream(const camera3_stream* stream) {
    return stream != nullptr && IsRaw(*stream) && stream->stream_use_case == kStreamUseCaseRawShort;
}
inline bool IsMiddleRawStream(const camera3_stream* stream) {
    return stream != nullptr && IsRaw(*stream) &&
           stream->stream_use_case == kStreamUseCaseRawMiddle;
}

inline bool IsHdrVideoStream(const camera3_stream& s) {
    return s.dynamic_range_profile == kDynamicRangeHlg10 ||
           s.dynamic_range_profile == kDynamicRangeHdr10 ||
           s.dynamic_range_profile == kDynamicRangeHdr10Plus;
}

// The stream names the framework id of a physical camera.
inline bool HasPhysicalCameraId(const camera3_stream& s) {
    return s.physical_camera_id != nullptr && s.physical_camera_id[0] != '\0';
}

// Whether some stream of the configuration passes `predicate`; a
// configuration without a stream array has none, null entries are skipped.
template <typename Predicate>
inline bool HasStream(const camera3_stream_configuration* config, Predicate predicate) {
    if (config == nullptr || config->streams == nullptr) {
        return false;
    }
    for (uint32_t i = 0; i < config->num_streams; ++i) {
        const camera3_stream* stream = config->streams[i];
        if (stream != nullptr && predicate(*stream)) {
            return true;
        }
    }
    return false;
}

}  // namespace Lumora

#endif  // LUMORA_STREAM_PREDICATES_H
