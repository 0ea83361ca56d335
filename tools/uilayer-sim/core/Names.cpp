#include "core/Names.h"

#include <hardware/camera3.h>
#include <hardware/gralloc.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <strings.h>

#include "CapabilityReference.h"
#include "IuiLayer.h"
#include "common/StreamPredicates.h"
#include "common/StreamRoles.h"
#include "common/VendorTags.h"
#include "core/Commands.h"
#include "core/Report.h"
#include "core/Suggest.h"

namespace UilayerSim {

namespace {

struct NamedValue {
    const char* name;
    int64_t value;
};

// An entry named as the platform's headers name it.
#define NAMED(value) \
    { #value, value }

struct NamedNumber {
    std::string name;
    int64_t value;
};

constexpr NamedValue kPixelFormats[] = {NAMED(HAL_PIXEL_FORMAT_RGBA_8888),
                                        NAMED(HAL_PIXEL_FORMAT_RGBX_8888),
                                        NAMED(HAL_PIXEL_FORMAT_RGB_888),
                                        NAMED(HAL_PIXEL_FORMAT_RGB_565),
                                        NAMED(HAL_PIXEL_FORMAT_BGRA_8888),
                                        NAMED(HAL_PIXEL_FORMAT_YCBCR_422_SP),
                                        NAMED(HAL_PIXEL_FORMAT_YCRCB_420_SP),
                                        NAMED(HAL_PIXEL_FORMAT_YCBCR_422_I),
                                        NAMED(HAL_PIXEL_FORMAT_RAW16),
                                        NAMED(HAL_PIXEL_FORMAT_BLOB),
                                        NAMED(HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED),
                                        NAMED(HAL_PIXEL_FORMAT_YCbCr_420_888),
                                        NAMED(HAL_PIXEL_FORMAT_RAW_OPAQUE),
                                        NAMED(HAL_PIXEL_FORMAT_RAW10),
                                        NAMED(HAL_PIXEL_FORMAT_RAW12),
                                        NAMED(HAL_PIXEL_FORMAT_YCBCR_P010),
                                        NAMED(HAL_PIXEL_FORMAT_Y8),
                                        NAMED(HAL_PIXEL_FORMAT_Y16),
                                        NAMED(HAL_PIXEL_FORMAT_YV12)};

// The last two are the camera layer's own usage flags.
constexpr NamedValue kUsageBits[] = {NAMED(GRALLOC_USAGE_SW_READ_RARELY),
                                     NAMED(GRALLOC_USAGE_SW_READ_OFTEN),
                                     NAMED(GRALLOC_USAGE_SW_WRITE_RARELY),
                                     NAMED(GRALLOC_USAGE_SW_WRITE_OFTEN),
                                     NAMED(GRALLOC_USAGE_HW_TEXTURE),
                                     NAMED(GRALLOC_USAGE_HW_RENDER),
                                     NAMED(GRALLOC_USAGE_HW_2D),
                                     NAMED(GRALLOC_USAGE_HW_COMPOSER),
                                     NAMED(GRALLOC_USAGE_HW_FB),
                                     NAMED(GRALLOC_USAGE_HW_VIDEO_ENCODER),
                                     NAMED(GRALLOC_USAGE_HW_CAMERA_WRITE),
                                     NAMED(GRALLOC_USAGE_HW_CAMERA_READ),
                                     NAMED(GRALLOC_USAGE_HW_CAMERA_ZSL),
                                     NAMED(GRALLOC_USAGE_RENDERSCRIPT),
                                     NAMED(GRALLOC_USAGE_PRIVATE_0),
                                     NAMED(GRALLOC_USAGE_PRIVATE_1),
                                     NAMED(GRALLOC_USAGE_PRIVATE_2),
                                     NAMED(GRALLOC_USAGE_PRIVATE_3),
                                     {"VENDOR_VIDEO", 0x80},
                                     {"VENDOR_METADATA", 0x40}};

// JPEG_R is newer than the C headers: its value is the graphics common data space's.
constexpr NamedValue kDataSpaces[] = {
    NAMED(HAL_DATASPACE_UNKNOWN),       NAMED(HAL_DATASPACE_ARBITRARY),
    NAMED(HAL_DATASPACE_JFIF),          NAMED(HAL_DATASPACE_BT601_625),
    NAMED(HAL_DATASPACE_BT601_525),     NAMED(HAL_DATASPACE_BT709),
    NAMED(HAL_DATASPACE_DEPTH),         NAMED(HAL_DATASPACE_SENSOR),
    NAMED(HAL_DATASPACE_DYNAMIC_DEPTH), NAMED(HAL_DATASPACE_HEIF),
    NAMED(HAL_DATASPACE_V0_JFIF),       NAMED(HAL_DATASPACE_V0_BT601_625),
    NAMED(HAL_DATASPACE_V0_BT601_525),  NAMED(HAL_DATASPACE_V0_BT709),
    NAMED(HAL_DATASPACE_BT2020),        NAMED(HAL_DATASPACE_BT2020_PQ),
    NAMED(HAL_DATASPACE_DISPLAY_P3),    {"HAL_DATASPACE_JPEG_R", 0x1005}};

constexpr NamedValue kStreamTypes[] = {NAMED(CAMERA3_STREAM_OUTPUT), NAMED(CAMERA3_STREAM_INPUT),
                                       NAMED(CAMERA3_STREAM_BIDIRECTIONAL)};

constexpr NamedValue kOperationModes[] = {
    NAMED(CAMERA3_STREAM_CONFIGURATION_NORMAL_MODE),
    NAMED(CAMERA3_STREAM_CONFIGURATION_CONSTRAINED_HIGH_SPEED_MODE)};

// The framework's public use cases first, then the camera layer's own.
constexpr NamedValue kStreamUseCases[] = {
    {"DEFAULT", 0},
    {"PREVIEW", 1},
    {"STILL_CAPTURE", 2},
    {"VIDEO_RECORD", 3},
    {"PREVIEW_VIDEO_STILL", 4},
    {"VIDEO_CALL", 5},
    {"CROPPED_RAW", 6},
    {"StreamUseCaseMultiSpectral", Lumora::kStreamUseCaseMultiSpectral},
    {"StreamUseCaseMultiSpectralAux", Lumora::kStreamUseCaseMultiSpectralAux},
    {"StreamUseCaseRawFull", Lumora::kStreamUseCaseRawFull},
    {"StreamUseCaseRawShort", Lumora::kStreamUseCaseRawShort},
    {"StreamUseCaseRawMiddle", Lumora::kStreamUseCaseRawMiddle}};

constexpr NamedValue kDynamicRangeProfiles[] = {
    {"STANDARD", 1}, {"HLG10", 2}, {"HDR10", 4}, {"HDR10_PLUS", 8}};

constexpr NamedValue kStandardTags[] = {NAMED(ANDROID_CONTROL_AE_ANTIBANDING_MODE),
                                        NAMED(ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION),
                                        NAMED(ANDROID_CONTROL_AE_LOCK),
                                        NAMED(ANDROID_CONTROL_AE_MODE),
                                        NAMED(ANDROID_CONTROL_AE_REGIONS),
                                        NAMED(ANDROID_CONTROL_AE_TARGET_FPS_RANGE),
                                        NAMED(ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER),
                                        NAMED(ANDROID_CONTROL_AF_MODE),
                                        NAMED(ANDROID_CONTROL_AF_TRIGGER),
                                        NAMED(ANDROID_CONTROL_AWB_MODE),
                                        NAMED(ANDROID_CONTROL_CAPTURE_INTENT),
                                        NAMED(ANDROID_CONTROL_EFFECT_MODE),
                                        NAMED(ANDROID_CONTROL_MODE),
                                        NAMED(ANDROID_CONTROL_SCENE_MODE),
                                        NAMED(ANDROID_CONTROL_VIDEO_STABILIZATION_MODE),
                                        NAMED(ANDROID_CONTROL_ZOOM_RATIO),
                                        NAMED(ANDROID_SENSOR_EXPOSURE_TIME),
                                        NAMED(ANDROID_SENSOR_FRAME_DURATION),
                                        NAMED(ANDROID_SENSOR_SENSITIVITY)};

// A table of names with the prefix (and suffix) that its short names leave
// out, and whether a name may be written in any case.
struct NameSource {
    NameTable table;
    const NamedValue* begin;
    const NamedValue* end;
    const char* prefix;
    const char* suffix;
    bool anyCase;
};

// Logs print formats and data spaces in either case ("YCBCR_420_888").
constexpr NameSource kSources[] = {
    {NameTable::StandardTags, std::begin(kStandardTags), std::end(kStandardTags), "", "", false},
    {NameTable::PixelFormats, std::begin(kPixelFormats), std::end(kPixelFormats),
     "HAL_PIXEL_FORMAT_", "", true},
    {NameTable::UsageBits, std::begin(kUsageBits), std::end(kUsageBits), "GRALLOC_USAGE_", "",
     false},
    {NameTable::DataSpaces, std::begin(kDataSpaces), std::end(kDataSpaces), "HAL_DATASPACE_", "",
     true},
    {NameTable::StreamTypes, std::begin(kStreamTypes), std::end(kStreamTypes), "CAMERA3_STREAM_",
     "", false},
    {NameTable::StreamUseCases, std::begin(kStreamUseCases), std::end(kStreamUseCases),
     "StreamUseCase", "", false},
    {NameTable::DynamicRangeProfiles, std::begin(kDynamicRangeProfiles),
     std::end(kDynamicRangeProfiles), "", "", false},
    {NameTable::OperationModes, std::begin(kOperationModes), std::end(kOperationModes),
     "CAMERA3_STREAM_CONFIGURATION_", "_MODE", false},
};

bool EndsWith(const std::string& text, const std::string& end) {
    return !end.empty() && text.size() > end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Every name of `table` with its value, in table order: the short names
// (without the common prefix and suffix), and the full ones too (with
// either or both) when `withFull`.
std::vector<NamedNumber> Table(NameTable table, bool withFull) {
    std::vector<NamedNumber> out;
    if (table == NameTable::Capabilities) {
        // The capability reference is the one table of names; a shared bit
        // appears once per name.
        for (uint32_t bit = 0; bit < Lumora::kCapabilityCount; ++bit) {
            const Lumora::_Capability& capability = Lumora::Capabilities()[bit];
            for (const char* name : {capability.name, capability.otherName}) {
                if (name != nullptr) {
                    out.push_back({name, bit});
                }
            }
        }
    } else if (table == NameTable::StreamRoles) {
        for (size_t i = 0; i < std::size(Lumora::kStreamRoles); ++i) {
            const std::string name = Lumora::kStreamRoles[i].name;
            out.push_back({name, static_cast<int64_t>(i)});
            if (withFull) {
                out.push_back({"EStreamType" + name, static_cast<int64_t>(i)});
            }
        }
    }
    for (const NameSource& source : kSources) {
        const size_t prefixLength = strlen(source.prefix);
        for (const NamedValue* entry = source.begin; source.table == table && entry != source.end;
             ++entry) {
            std::string base = entry->name;
            const bool prefixed =
                prefixLength > 0 && base.compare(0, prefixLength, source.prefix) == 0;
            base.erase(0, prefixed ? prefixLength : 0);
            const bool suffixed = EndsWith(base, source.suffix);
            base.erase(base.size() - (suffixed ? strlen(source.suffix) : 0));
            out.push_back({base, entry->value});
            for (int with = 1; withFull && with < 4; ++with) {
                const bool prefix = (with & 1) != 0;
                const bool suffix = (with & 2) != 0;
                if ((prefixed || !prefix) && (suffixed || !suffix)) {
                    out.push_back(
                        {(prefix ? source.prefix : "") + base + (suffix ? source.suffix : ""),
                         entry->value});
                }
            }
        }
    }
    return out;
}

bool AnyCase(NameTable table) {
    return std::any_of(std::begin(kSources), std::end(kSources), [&](const NameSource& source) {
        return source.table == table && source.anyCase;
    });
}

}  // namespace

std::vector<std::string> AcceptedNames(NameTable table) {
    std::vector<std::string> names;
    for (const NamedNumber& entry : Table(table, true)) {
        names.push_back(entry.name);
    }
    return names;
}

std::string NameOfNumber(NameTable table, int64_t value) {
    for (const NamedNumber& entry : Table(table, false)) {
        if (entry.value == value) {
            return entry.name;
        }
    }
    return std::to_string(value);
}

std::string CapabilityName(uint32_t bit) {
    if (bit >= Lumora::kCapabilityCount || Lumora::Capabilities()[bit].name == nullptr) {
        return "bit" + std::to_string(bit);
    }
    const Lumora::_Capability& capability = Lumora::Capabilities()[bit];
    return capability.otherName == nullptr
               ? capability.name
               : std::string(capability.name) + "/" + capability.otherName;
}

bool CapabilityByName(const std::string& name, uint32_t* bit) {
    const int found = Lumora::FindCapability(name);
    if (found < 0) {
        return false;
    }
    *bit = static_cast<uint32_t>(found);
    return true;
}

std::string StreamRoleName(int32_t role) {
    if (role >= 0 && static_cast<size_t>(role) < std::size(Lumora::kStreamRoles)) {
        return Lumora::kStreamRoles[role].name;
    }
    return "Type" + std::to_string(role);
}

bool NumberByName(NameTable table, const std::string& name, int64_t* value) {
    const bool anyCase = AnyCase(table);
    for (const NamedNumber& entry : Table(table, true)) {
        if (entry.name == name || (anyCase && strcasecmp(entry.name.c_str(), name.c_str()) == 0)) {
            *value = entry.value;
            return true;
        }
    }
    return false;
}

bool StandardTagByName(const std::string& name, uint32_t* tag) {
    int64_t value = 0;
    if (!NumberByName(NameTable::StandardTags, name, &value)) {
        return false;
    }
    *tag = static_cast<uint32_t>(value);
    return true;
}

std::string StandardTagName(uint32_t tag) {
    for (const NamedValue& entry : kStandardTags) {
        if (static_cast<uint32_t>(entry.value) == tag) {
            return entry.name;
        }
    }
    char text[16];
    snprintf(text, sizeof(text), "0x%X", tag);
    return text;
}

namespace {

// ElementType follows the metadata store's order of its first four types.
static_assert(TYPE_BYTE == 0 && TYPE_INT32 == 1 && TYPE_FLOAT == 2 && TYPE_INT64 == 3,
              "element types in the store's order");

ElementType ElementTypeOf(int type) {
    return type >= TYPE_BYTE && type <= TYPE_INT64 ? static_cast<ElementType>(type)
                                                   : ElementType::Unknown;
}

}  // namespace

ElementType StandardTagType(uint32_t tag) {
    return ElementTypeOf(get_camera_metadata_tag_type(tag));
}

ElementType VendorTagType(uint32_t index) {
    return ElementTypeOf(Lumora::VendorTagType(index));
}

const char* ElementTypeName(ElementType type) {
    constexpr const char* kNames[] = {"bytes", "int32", "float", "int64", "unknown"};
    return kNames[static_cast<size_t>(type)];
}

namespace {

struct NameListing {
    const char* name;
    NameTable table;
};

constexpr NameListing kListings[] = {
    {"caps", NameTable::Capabilities},
    {"tags", NameTable::StandardTags},
    {"formats", NameTable::PixelFormats},
    {"roles", NameTable::StreamRoles},
};

// The standard tags, then every vendor tag the library uses, each with its
// element type: "0x...\tNAME\tTYPE" and "vendor N\tNAME\tTYPE".
ReportNode TagListing() {
    ReportNode list = ReportNode::List();
    for (const NamedNumber& entry : Table(NameTable::StandardTags, false)) {
        const uint32_t tag = static_cast<uint32_t>(entry.value);
        char id[16];
        snprintf(id, sizeof(id), "0x%X", tag);
        ReportNode& item = list.Push(ReportNode::Map());
        item.Add("id", ReportNode::Text(id).WithJson(ReportNode::Integer(tag)));
        item.Add("vendor", ReportNode::Boolean(false));
        item.Add("name", ReportNode::Text(entry.name));
        item.Add("type", ReportNode::Text(ElementTypeName(StandardTagType(tag))));
    }
    for (const Lumora::_VendorTagInfo& tag : Lumora::kVendorTags) {
        ReportNode& item = list.Push(ReportNode::Map());
        item.Add("id", ReportNode::Text("vendor " + std::to_string(tag.index))
                           .WithJson(ReportNode::Integer(tag.index)));
        item.Add("vendor", ReportNode::Boolean(true));
        item.Add("name", ReportNode::Text(tag.name));
        item.Add("type", ReportNode::Text(ElementTypeName(VendorTagType(tag.index))));
    }
    return list;
}

ReportNode Listing(const NameListing& listing) {
    if (listing.table == NameTable::StandardTags) {
        return TagListing();
    }
    ReportNode list = ReportNode::List();
    for (const NamedNumber& entry : Table(listing.table, false)) {
        ReportNode& item = list.Push(ReportNode::Map());
        item.Add("id", ReportNode::Integer(entry.value));
        item.Add("name", ReportNode::Text(entry.name));
    }
    return list;
}

}  // namespace

int RunNamesCommand(const CommandLine& line) {
    const std::string& which = line.operands.front();
    std::vector<std::string> known;
    for (const NameListing& listing : kListings) {
        known.push_back(listing.name);
        if (which != listing.name) {
            continue;
        }
        const ReportNode list = Listing(listing);
        if (line.Has("--json")) {
            WriteOut(RenderJson(list));
            return kExitDone;
        }
        // One line per entry: its values in order, a tab between them.
        std::string text;
        for (const ReportNode& item : list.Items()) {
            for (const auto& field : item.Entries()) {
                if (field.first != "vendor") {
                    text +=
                        field.second.Scalar() + (&field == &item.Entries().back() ? "\n" : "\t");
                }
            }
        }
        WriteOut(text);
        return kExitDone;
    }
    const std::string closest = ClosestName(which, known);
    throw UsageError("no list named '" + which + "'" +
                     (closest.empty() ? "; the lists are caps, tags, formats and roles"
                                      : " (did you mean '" + closest + "'?)"));
}

}  // namespace UilayerSim
