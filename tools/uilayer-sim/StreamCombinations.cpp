#include "StreamCombinations.h"

#include <hardware/camera3.h>
#include <hardware/gralloc.h>
#include <system/graphics.h>

#include <algorithm>

namespace UilayerSim {

namespace {

constexpr int64_t kDynamicRangeStandard = 1;
constexpr int64_t kDynamicRangeHlg10 = 2;

constexpr StreamSize kPreviewSize = {1920, 1080};
constexpr StreamSize kRecordSize = {3840, 2160};
constexpr StreamSize kVgaSize = {640, 480};

using K = StreamKind;
using S = SizeClass;
using U = StreamUseCase;
using T = CombinationTable;

constexpr StreamTarget kPrivPreview = {K::Priv, S::Preview, U::Default};
constexpr StreamTarget kPrivRecord = {K::Priv, S::Record, U::Default};
constexpr StreamTarget kPrivMax = {K::Priv, S::Maximum, U::Default};
constexpr StreamTarget kPrivVga = {K::Priv, S::Vga, U::Default};
constexpr StreamTarget kYuvPreview = {K::Yuv, S::Preview, U::Default};
constexpr StreamTarget kYuvRecord = {K::Yuv, S::Record, U::Default};
constexpr StreamTarget kYuvMax = {K::Yuv, S::Maximum, U::Default};
constexpr StreamTarget kYuvVga = {K::Yuv, S::Vga, U::Default};
constexpr StreamTarget kJpegRecord = {K::Jpeg, S::Record, U::Default};
constexpr StreamTarget kJpegMax = {K::Jpeg, S::Maximum, U::Default};
constexpr StreamTarget kRawMax = {K::Raw, S::Maximum, U::Default};

constexpr StreamTarget With(StreamTarget target, StreamUseCase useCase) {
    target.useCase = useCase;
    return target;
}

// The guaranteed combinations of each table; a level takes its own table and
// every table below it.
const std::vector<StreamCombination>& Tables() {
    static const std::vector<StreamCombination> tables = {
        {T::Legacy, {kPrivMax}},
        {T::Legacy, {kJpegMax}},
        {T::Legacy, {kYuvMax}},
        {T::Legacy, {kPrivPreview, kJpegMax}},
        {T::Legacy, {kYuvPreview, kJpegMax}},
        {T::Legacy, {kPrivPreview, kPrivPreview}},
        {T::Legacy, {kPrivPreview, kYuvPreview}},
        {T::Legacy, {kPrivPreview, kYuvPreview, kJpegMax}},

        {T::Limited, {kPrivPreview, kPrivRecord}},
        {T::Limited, {kPrivPreview, kYuvRecord}},
        {T::Limited, {kYuvPreview, kYuvRecord}},
        {T::Limited, {kPrivPreview, kPrivRecord, kJpegRecord}},
        {T::Limited, {kPrivPreview, kYuvRecord, kJpegRecord}},
        {T::Limited, {kYuvPreview, kYuvPreview, kJpegMax}},

        {T::Full, {kPrivPreview, kPrivMax}},
        {T::Full, {kPrivPreview, kYuvMax}},
        {T::Full, {kYuvPreview, kYuvMax}},
        {T::Full, {kPrivPreview, kPrivPreview, kJpegMax}},
        {T::Full, {kYuvVga, kPrivPreview, kYuvMax}},
        {T::Full, {kYuvVga, kYuvPreview, kYuvMax}},

        {T::Raw, {kRawMax}},
        {T::Raw, {kPrivPreview, kRawMax}},
        {T::Raw, {kYuvPreview, kRawMax}},
        {T::Raw, {kPrivPreview, kPrivPreview, kRawMax}},
        {T::Raw, {kPrivPreview, kYuvPreview, kRawMax}},
        {T::Raw, {kYuvPreview, kYuvPreview, kRawMax}},
        {T::Raw, {kPrivPreview, kJpegMax, kRawMax}},
        {T::Raw, {kYuvPreview, kJpegMax, kRawMax}},

        {T::Level3, {kPrivPreview, kPrivVga, kYuvMax, kRawMax}},
        {T::Level3, {kPrivPreview, kPrivVga, kJpegMax, kRawMax}},

        // PRIV and YUV outputs carry HLG10; JPEG stays 8-bit.
        {T::TenBit, {kPrivMax}},
        {T::TenBit, {kYuvMax}},
        {T::TenBit, {kPrivPreview, kJpegMax}},
        {T::TenBit, {kPrivPreview, kYuvMax}},
        {T::TenBit, {kYuvPreview, kYuvMax}},
        {T::TenBit, {kPrivPreview, kPrivRecord}},
        {T::TenBit, {kPrivPreview, kPrivRecord, kYuvRecord}},
        {T::TenBit, {kPrivPreview, kPrivRecord, kJpegRecord}},

        {T::UseCases, {With(kPrivPreview, U::Preview)}},
        {T::UseCases, {With(kYuvPreview, U::Preview)}},
        {T::UseCases, {With(kPrivRecord, U::VideoRecord)}},
        {T::UseCases, {With(kYuvRecord, U::VideoRecord)}},
        {T::UseCases, {With(kJpegMax, U::StillCapture)}},
        {T::UseCases, {With(kYuvMax, U::StillCapture)}},
        {T::UseCases, {With(kPrivPreview, U::PreviewVideoStill)}},
        {T::UseCases, {With(kYuvPreview, U::PreviewVideoStill)}},
        {T::UseCases, {With(kPrivPreview, U::VideoCall)}},
        {T::UseCases, {With(kYuvPreview, U::VideoCall)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kJpegMax, U::StillCapture)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kYuvMax, U::StillCapture)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kPrivRecord, U::VideoRecord)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kYuvRecord, U::VideoRecord)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kYuvPreview, U::Preview)}},
        {T::UseCases,
         {With(kPrivPreview, U::Preview), With(kPrivRecord, U::VideoRecord),
          With(kJpegRecord, U::StillCapture)}},
        {T::UseCases,
         {With(kPrivPreview, U::Preview), With(kYuvRecord, U::VideoRecord),
          With(kJpegRecord, U::StillCapture)}},
        {T::UseCases,
         {With(kPrivPreview, U::Preview), With(kYuvPreview, U::Preview),
          With(kJpegMax, U::StillCapture)}},
        {T::UseCases, {With(kRawMax, U::CroppedRaw)}},
        {T::UseCases, {With(kPrivPreview, U::Preview), With(kRawMax, U::CroppedRaw)}},
        {T::UseCases,
         {With(kPrivPreview, U::Preview), With(kJpegMax, U::StillCapture),
          With(kRawMax, U::CroppedRaw)}},
        {T::UseCases,
         {With(kPrivPreview, U::Preview), With(kYuvMax, U::StillCapture),
          With(kRawMax, U::CroppedRaw)}},
    };
    return tables;
}

bool Selected(CombinationTable table, const CombinationSelection& selection) {
    switch (table) {
        case T::Legacy:
            return true;
        case T::Limited:
            return selection.level != HardwareLevel::Legacy;
        case T::Full:
            return selection.level == HardwareLevel::Full ||
                   selection.level == HardwareLevel::Level3;
        case T::Raw:
            return selection.raw || selection.level == HardwareLevel::Level3;
        case T::Level3:
            return selection.level == HardwareLevel::Level3;
        case T::TenBit:
            return selection.tenBit;
        case T::UseCases:
            return selection.useCases;
    }
    return false;
}

const char* KindName(StreamKind kind) {
    static const char* const kNames[] = {"PRIV", "YUV", "JPEG", "RAW"};
    return kNames[static_cast<size_t>(kind)];
}

const char* SizeName(SizeClass size) {
    static const char* const kNames[] = {"PREVIEW", "RECORD", "MAX", "VGA"};
    return kNames[static_cast<size_t>(size)];
}

// Use cases by their value (0..6).
const char* UseCaseName(StreamUseCase useCase) {
    static const char* const kNames[] = {
        "DEFAULT",    "PREVIEW",     "STILL_CAPTURE", "VIDEO_RECORD", "PREVIEW_VIDEO_STILL",
        "VIDEO_CALL", "CROPPED_RAW",
    };
    return kNames[static_cast<size_t>(useCase)];
}

bool Fits(StreamSize size, uint32_t width, uint32_t height) {
    return size.width <= width && size.height <= height;
}

bool CarriesTenBit(const StreamTarget& target, CombinationTable table) {
    return table == T::TenBit && (target.kind == K::Priv || target.kind == K::Yuv);
}

}  // namespace

StreamSize SizeClasses::Of(SizeClass size) const {
    switch (size) {
        case S::Preview:
            return preview;
        case S::Record:
            return record;
        case S::Maximum:
            return maximum;
        case S::Vga:
            return vga;
    }
    return StreamSize{};
}

SizeClasses SizesForArray(uint32_t width, uint32_t height) {
    SizeClasses sizes;
    sizes.maximum = StreamSize{width, height};
    sizes.preview = Fits(kPreviewSize, width, height) ? kPreviewSize : sizes.maximum;
    if (Fits(kRecordSize, width, height)) {
        sizes.record = kRecordSize;
    } else {
        // The largest 16k x 9k inside the array.
        const uint32_t steps = std::min(width / 16, height / 9);
        sizes.record = StreamSize{steps * 16, steps * 9};
    }
    sizes.vga = kVgaSize;
    return sizes;
}

std::vector<StreamCombination> GuaranteedCombinations(const CombinationSelection& selection) {
    std::vector<StreamCombination> combinations;
    for (const StreamCombination& combination : Tables()) {
        if (Selected(combination.table, selection)) {
            combinations.push_back(combination);
        }
    }
    return combinations;
}

const char* TableName(CombinationTable table) {
    static const char* const kNames[] = {"legacy",  "limited", "full",     "raw",
                                         "level 3", "ten-bit", "use cases"};
    return kNames[static_cast<size_t>(table)];
}

std::string StreamLabel(const StreamTarget& target, CombinationTable table) {
    std::string label = std::string(KindName(target.kind)) + " " + SizeName(target.size);
    if (CarriesTenBit(target, table)) {
        label += " [HLG10]";
    }
    if (target.useCase != U::Default) {
        label += std::string(" [") + UseCaseName(target.useCase) + "]";
    }
    return label;
}

std::string CombinationLabel(const StreamCombination& combination) {
    std::string label;
    for (const StreamTarget& target : combination.streams) {
        if (!label.empty()) {
            label += " + ";
        }
        label += StreamLabel(target, combination.table);
    }
    return label;
}

StreamSetup MakeStream(const StreamTarget& target, CombinationTable table, const SizeClasses& sizes,
                       const std::string& name) {
    StreamSetup stream;
    stream.name = name;
    stream.streamType = CAMERA3_STREAM_OUTPUT;
    const StreamSize size = sizes.Of(target.size);
    stream.width = size.width;
    stream.height = size.height;
    const bool tenBit = CarriesTenBit(target, table);
    switch (target.kind) {
        case K::Priv:
            stream.format = HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED;
            stream.usage = target.size == S::Record
                               ? GRALLOC_USAGE_HW_VIDEO_ENCODER
                               : GRALLOC_USAGE_HW_COMPOSER | GRALLOC_USAGE_HW_TEXTURE;
            break;
        case K::Yuv:
            // A 10-bit YUV output comes in the 10-bit YUV format.
            stream.format = tenBit ? static_cast<int>(HAL_PIXEL_FORMAT_YCBCR_P010)
                                   : static_cast<int>(HAL_PIXEL_FORMAT_YCbCr_420_888);
            stream.usage = GRALLOC_USAGE_SW_READ_OFTEN;
            break;
        case K::Jpeg:
            stream.format = HAL_PIXEL_FORMAT_BLOB;
            stream.usage = GRALLOC_USAGE_SW_READ_OFTEN;
            stream.dataSpace = HAL_DATASPACE_V0_JFIF;
            break;
        case K::Raw:
            stream.format = HAL_PIXEL_FORMAT_RAW16;
            stream.usage = GRALLOC_USAGE_SW_READ_OFTEN;
            break;
    }
    stream.dynamicRangeProfile = tenBit ? kDynamicRangeHlg10 : kDynamicRangeStandard;
    stream.useCase = static_cast<int64_t>(target.useCase);
    return stream;
}

}  // namespace UilayerSim
