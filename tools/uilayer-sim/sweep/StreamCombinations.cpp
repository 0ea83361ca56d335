#include "sweep/StreamCombinations.h"

#include <hardware/camera3.h>
#include <hardware/gralloc.h>
#include <system/graphics.h>

#include <algorithm>
#include <utility>

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
// High-speed video: the encoder's stream at the preview's size.
constexpr StreamTarget kPrivVideo = {K::Priv, S::Preview, U::Default, true};

constexpr const char* kKindNames[] = {"PRIV", "YUV", "JPEG", "RAW"};
constexpr const char* kSizeNames[] = {"PREVIEW", "RECORD", "MAX", "VGA"};
constexpr const char* kTableNames[] = {"legacy",  "limited", "full",      "raw",
                                       "level 3", "ten-bit", "use cases", "high speed"};

constexpr StreamTarget With(StreamTarget target, StreamUseCase useCase) {
    target.useCase = useCase;
    return target;
}

// The guaranteed combinations of each table; a level takes its own table and
// every table below it.
const std::vector<StreamCombination>& Tables() {
    static const std::vector<StreamCombination> tables = [] {
        using Streams = std::vector<StreamTarget>;
        // clang-format off
        const std::pair<CombinationTable, std::vector<Streams>> groups[] = {
            {T::Legacy, {{kPrivMax}, {kJpegMax}, {kYuvMax}, {kPrivPreview, kJpegMax},
                         {kYuvPreview, kJpegMax}, {kPrivPreview, kPrivPreview},
                         {kPrivPreview, kYuvPreview}, {kPrivPreview, kYuvPreview, kJpegMax}}},
            {T::Limited, {{kPrivPreview, kPrivRecord}, {kPrivPreview, kYuvRecord},
                          {kYuvPreview, kYuvRecord}, {kPrivPreview, kPrivRecord, kJpegRecord},
                          {kPrivPreview, kYuvRecord, kJpegRecord},
                          {kYuvPreview, kYuvPreview, kJpegMax}}},
            {T::Full, {{kPrivPreview, kPrivMax}, {kPrivPreview, kYuvMax}, {kYuvPreview, kYuvMax},
                       {kPrivPreview, kPrivPreview, kJpegMax}, {kYuvVga, kPrivPreview, kYuvMax},
                       {kYuvVga, kYuvPreview, kYuvMax}}},
            {T::Raw, {{kRawMax}, {kPrivPreview, kRawMax}, {kYuvPreview, kRawMax},
                      {kPrivPreview, kPrivPreview, kRawMax}, {kPrivPreview, kYuvPreview, kRawMax},
                      {kYuvPreview, kYuvPreview, kRawMax}, {kPrivPreview, kJpegMax, kRawMax},
                      {kYuvPreview, kJpegMax, kRawMax}}},
            {T::Level3, {{kPrivPreview, kPrivVga, kYuvMax, kRawMax},
                         {kPrivPreview, kPrivVga, kJpegMax, kRawMax}}},
            // PRIV and YUV outputs carry HLG10; JPEG stays 8-bit.
            {T::TenBit, {{kPrivMax}, {kYuvMax}, {kPrivPreview, kJpegMax}, {kPrivPreview, kYuvMax},
                         {kYuvPreview, kYuvMax}, {kPrivPreview, kPrivRecord},
                         {kPrivPreview, kPrivRecord, kYuvRecord},
                         {kPrivPreview, kPrivRecord, kJpegRecord}}},
            {T::UseCases, {{With(kPrivPreview, U::Preview)}, {With(kYuvPreview, U::Preview)},
                           {With(kPrivRecord, U::VideoRecord)}, {With(kYuvRecord, U::VideoRecord)},
                           {With(kJpegMax, U::StillCapture)}, {With(kYuvMax, U::StillCapture)},
                           {With(kPrivPreview, U::PreviewVideoStill)},
                           {With(kYuvPreview, U::PreviewVideoStill)},
                           {With(kPrivPreview, U::VideoCall)}, {With(kYuvPreview, U::VideoCall)},
                           {With(kPrivPreview, U::Preview), With(kJpegMax, U::StillCapture)},
                           {With(kPrivPreview, U::Preview), With(kYuvMax, U::StillCapture)},
                           {With(kPrivPreview, U::Preview), With(kPrivRecord, U::VideoRecord)},
                           {With(kPrivPreview, U::Preview), With(kYuvRecord, U::VideoRecord)},
                           {With(kPrivPreview, U::Preview), With(kYuvPreview, U::Preview)},
                           {With(kPrivPreview, U::Preview), With(kPrivRecord, U::VideoRecord), With(kJpegRecord, U::StillCapture)},
                           {With(kPrivPreview, U::Preview), With(kYuvRecord, U::VideoRecord), With(kJpegRecord, U::StillCapture)},
                           {With(kPrivPreview, U::Preview), With(kYuvPreview, U::Preview), With(kJpegMax, U::StillCapture)},
                           {With(kRawMax, U::CroppedRaw)},
                           {With(kPrivPreview, U::Preview), With(kRawMax, U::CroppedRaw)},
                           {With(kPrivPreview, U::Preview), With(kJpegMax, U::StillCapture), With(kRawMax, U::CroppedRaw)},
                           {With(kPrivPreview, U::Preview), With(kYuvMax, U::StillCapture), With(kRawMax, U::CroppedRaw)}}},
            // A constrained high-speed session: a preview, and at most one video stream.
            {T::HighSpeed, {{kPrivPreview}, {kPrivPreview, kPrivVideo}}},
        };
        // clang-format on
        std::vector<StreamCombination> all;
        for (const auto& group : groups) {
            for (const Streams& streams : group.second) {
                all.push_back({group.first, streams});
            }
        }
        return all;
    }();
    return tables;
}

bool Selected(CombinationTable table, const CombinationSelection& selection) {
    if (selection.highSpeed) {
        return table == T::HighSpeed;
    }
    const bool level3 = selection.level == HardwareLevel::Level3;
    // In CombinationTable order.
    const bool selected[] = {true,
                             selection.level != HardwareLevel::Legacy,
                             selection.level == HardwareLevel::Full || level3,
                             selection.raw || level3,
                             level3,
                             selection.tenBit,
                             selection.useCases,
                             false};
    return selected[static_cast<size_t>(table)];
}

bool Fits(StreamSize size, uint32_t width, uint32_t height) {
    return size.width <= width && size.height <= height;
}

bool CarriesTenBit(const StreamTarget& target, CombinationTable table) {
    return table == T::TenBit && (target.kind == K::Priv || target.kind == K::Yuv);
}

}  // namespace

StreamSize SizeClasses::Of(SizeClass size) const {
    // In SizeClass order.
    constexpr StreamSize SizeClasses::*kSizes[] = {&SizeClasses::preview, &SizeClasses::record,
                                                   &SizeClasses::maximum, &SizeClasses::vga};
    return this->*kSizes[static_cast<size_t>(size)];
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
    return NameOf(kTableNames, table);
}

std::string StreamLabel(const StreamTarget& target, CombinationTable table) {
    std::string label =
        std::string(NameOf(kKindNames, target.kind)) + " " + NameOf(kSizeNames, target.size);
    if (CarriesTenBit(target, table)) {
        label += " [HLG10]";
    }
    if (target.useCase != U::Default) {
        label += std::string(" [") +
                 NameOfNumber(NameTable::StreamUseCases, static_cast<int64_t>(target.useCase)) +
                 "]";
    }
    if (target.encoder) {
        label += " [VIDEO]";
    }
    return label;
}

std::string CombinationLabel(const StreamCombination& combination) {
    std::string label;
    for (const StreamTarget& target : combination.streams) {
        label += (label.empty() ? "" : " + ") + StreamLabel(target, combination.table);
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
            stream.usage = target.size == S::Record || target.encoder
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
