#include "core/Names.h"

#include <hardware/gralloc.h>
#include <system/camera_metadata.h>
#include <system/graphics.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "CapabilityReference.h"
#include "IuiLayer.h"
#include "common/StreamRoles.h"
#include "common/VendorTags.h"
#include "core/Commands.h"
#include "core/Suggest.h"

namespace UilayerSim {

namespace {

struct NamedValue {
    const char* name;
    int64_t value;
};

constexpr NamedValue kPixelFormats[] = {
    {"HAL_PIXEL_FORMAT_RGBA_8888", HAL_PIXEL_FORMAT_RGBA_8888},
    {"HAL_PIXEL_FORMAT_RGBX_8888", HAL_PIXEL_FORMAT_RGBX_8888},
    {"HAL_PIXEL_FORMAT_RGB_888", HAL_PIXEL_FORMAT_RGB_888},
    {"HAL_PIXEL_FORMAT_RGB_565", HAL_PIXEL_FORMAT_RGB_565},
    {"HAL_PIXEL_FORMAT_BGRA_8888", HAL_PIXEL_FORMAT_BGRA_8888},
    {"HAL_PIXEL_FORMAT_YCBCR_422_SP", HAL_PIXEL_FORMAT_YCBCR_422_SP},
    {"HAL_PIXEL_FORMAT_YCRCB_420_SP", HAL_PIXEL_FORMAT_YCRCB_420_SP},
    {"HAL_PIXEL_FORMAT_YCBCR_422_I", HAL_PIXEL_FORMAT_YCBCR_422_I},
    {"HAL_PIXEL_FORMAT_RAW16", HAL_PIXEL_FORMAT_RAW16},
    {"HAL_PIXEL_FORMAT_BLOB", HAL_PIXEL_FORMAT_BLOB},
    {"HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED", HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED},
    {"HAL_PIXEL_FORMAT_YCbCr_420_888", HAL_PIXEL_FORMAT_YCbCr_420_888},
    {"HAL_PIXEL_FORMAT_RAW_OPAQUE", HAL_PIXEL_FORMAT_RAW_OPAQUE},
    {"HAL_PIXEL_FORMAT_RAW10", HAL_PIXEL_FORMAT_RAW10},
    {"HAL_PIXEL_FORMAT_RAW12", HAL_PIXEL_FORMAT_RAW12},
    {"HAL_PIXEL_FORMAT_YCBCR_P010", HAL_PIXEL_FORMAT_YCBCR_P010},
    {"HAL_PIXEL_FORMAT_Y8", HAL_PIXEL_FORMAT_Y8},
    {"HAL_PIXEL_FORMAT_Y16", HAL_PIXEL_FORMAT_Y16},
    {"HAL_PIXEL_FORMAT_YV12", HAL_PIXEL_FORMAT_YV12},
};

constexpr NamedValue kUsageBits[] = {
    {"GRALLOC_USAGE_SW_READ_RARELY", GRALLOC_USAGE_SW_READ_RARELY},
    {"GRALLOC_USAGE_SW_READ_OFTEN", GRALLOC_USAGE_SW_READ_OFTEN},
    {"GRALLOC_USAGE_SW_WRITE_RARELY", GRALLOC_USAGE_SW_WRITE_RARELY},
    {"GRALLOC_USAGE_SW_WRITE_OFTEN", GRALLOC_USAGE_SW_WRITE_OFTEN},
    {"GRALLOC_USAGE_HW_TEXTURE", GRALLOC_USAGE_HW_TEXTURE},
    {"GRALLOC_USAGE_HW_RENDER", GRALLOC_USAGE_HW_RENDER},
    {"GRALLOC_USAGE_HW_2D", GRALLOC_USAGE_HW_2D},
    {"GRALLOC_USAGE_HW_COMPOSER", GRALLOC_USAGE_HW_COMPOSER},
    {"GRALLOC_USAGE_HW_FB", GRALLOC_USAGE_HW_FB},
    {"GRALLOC_USAGE_HW_VIDEO_ENCODER", GRALLOC_USAGE_HW_VIDEO_ENCODER},
    {"GRALLOC_USAGE_HW_CAMERA_WRITE", GRALLOC_USAGE_HW_CAMERA_WRITE},
    {"GRALLOC_USAGE_HW_CAMERA_READ", GRALLOC_USAGE_HW_CAMERA_READ},
    {"GRALLOC_USAGE_HW_CAMERA_ZSL", GRALLOC_USAGE_HW_CAMERA_ZSL},
    {"GRALLOC_USAGE_RENDERSCRIPT", GRALLOC_USAGE_RENDERSCRIPT},
    {"GRALLOC_USAGE_PRIVATE_0", GRALLOC_USAGE_PRIVATE_0},
    {"GRALLOC_USAGE_PRIVATE_1", GRALLOC_USAGE_PRIVATE_1},
    {"GRALLOC_USAGE_PRIVATE_2", GRALLOC_USAGE_PRIVATE_2},
    {"GRALLOC_USAGE_PRIVATE_3", GRALLOC_USAGE_PRIVATE_3},
    // The camera layer's own usage flags.
    {"VENDOR_VIDEO", 0x80},
    {"VENDOR_METADATA", 0x40},
};

constexpr NamedValue kDataSpaces[] = {
    {"HAL_DATASPACE_UNKNOWN", HAL_DATASPACE_UNKNOWN},
    {"HAL_DATASPACE_ARBITRARY", HAL_DATASPACE_ARBITRARY},
    {"HAL_DATASPACE_JFIF", HAL_DATASPACE_JFIF},
    {"HAL_DATASPACE_BT601_625", HAL_DATASPACE_BT601_625},
    {"HAL_DATASPACE_BT601_525", HAL_DATASPACE_BT601_525},
    {"HAL_DATASPACE_BT709", HAL_DATASPACE_BT709},
    {"HAL_DATASPACE_DEPTH", HAL_DATASPACE_DEPTH},
    {"HAL_DATASPACE_SENSOR", HAL_DATASPACE_SENSOR},
    {"HAL_DATASPACE_DYNAMIC_DEPTH", HAL_DATASPACE_DYNAMIC_DEPTH},
    {"HAL_DATASPACE_HEIF", HAL_DATASPACE_HEIF},
    {"HAL_DATASPACE_V0_JFIF", HAL_DATASPACE_V0_JFIF},
    {"HAL_DATASPACE_V0_BT601_625", HAL_DATASPACE_V0_BT601_625},
    {"HAL_DATASPACE_V0_BT601_525", HAL_DATASPACE_V0_BT601_525},
    {"HAL_DATASPACE_V0_BT709", HAL_DATASPACE_V0_BT709},
    {"HAL_DATASPACE_BT2020", HAL_DATASPACE_BT2020},
};

constexpr NamedValue kStreamTypes[] = {
    {"CAMERA3_STREAM_OUTPUT", 0},
    {"CAMERA3_STREAM_INPUT", 1},
    {"CAMERA3_STREAM_BIDIRECTIONAL", 2},
};

constexpr NamedValue kStreamUseCases[] = {
    {"StreamUseCaseMultiSpectral", 0x0080000000010000LL},
    {"StreamUseCaseMultiSpectralAux", 0x0400000000010001LL},
    {"StreamUseCaseRawFull", 0x0400000000010000LL},
    {"StreamUseCaseRawShort", 0x0800000000010000LL},
    {"StreamUseCaseRawMiddle", 0x0800000000080000LL},
};

constexpr NamedValue kDynamicRangeProfiles[] = {
    {"STANDARD", 1},
    {"HLG10", 2},
    {"HDR10", 4},
    {"HDR10_PLUS", 8},
};

constexpr NamedValue kStandardTags[] = {
    {"ANDROID_CONTROL_AE_ANTIBANDING_MODE", ANDROID_CONTROL_AE_ANTIBANDING_MODE},
    {"ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION", ANDROID_CONTROL_AE_EXPOSURE_COMPENSATION},
    {"ANDROID_CONTROL_AE_LOCK", ANDROID_CONTROL_AE_LOCK},
    {"ANDROID_CONTROL_AE_MODE", ANDROID_CONTROL_AE_MODE},
    {"ANDROID_CONTROL_AE_REGIONS", ANDROID_CONTROL_AE_REGIONS},
    {"ANDROID_CONTROL_AE_TARGET_FPS_RANGE", ANDROID_CONTROL_AE_TARGET_FPS_RANGE},
    {"ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER", ANDROID_CONTROL_AE_PRECAPTURE_TRIGGER},
    {"ANDROID_CONTROL_AF_MODE", ANDROID_CONTROL_AF_MODE},
    {"ANDROID_CONTROL_AF_TRIGGER", ANDROID_CONTROL_AF_TRIGGER},
    {"ANDROID_CONTROL_AWB_MODE", ANDROID_CONTROL_AWB_MODE},
    {"ANDROID_CONTROL_CAPTURE_INTENT", ANDROID_CONTROL_CAPTURE_INTENT},
    {"ANDROID_CONTROL_EFFECT_MODE", ANDROID_CONTROL_EFFECT_MODE},
    {"ANDROID_CONTROL_MODE", ANDROID_CONTROL_MODE},
    {"ANDROID_CONTROL_SCENE_MODE", ANDROID_CONTROL_SCENE_MODE},
    {"ANDROID_CONTROL_VIDEO_STABILIZATION_MODE", ANDROID_CONTROL_VIDEO_STABILIZATION_MODE},
    {"ANDROID_CONTROL_ZOOM_RATIO", ANDROID_CONTROL_ZOOM_RATIO},
    {"ANDROID_SENSOR_EXPOSURE_TIME", ANDROID_SENSOR_EXPOSURE_TIME},
    {"ANDROID_SENSOR_FRAME_DURATION", ANDROID_SENSOR_FRAME_DURATION},
    {"ANDROID_SENSOR_SENSITIVITY", ANDROID_SENSOR_SENSITIVITY},
};

template <size_t N>
void AppendTable(const NamedValue (&table)[N], const char* prefix, bool withFull,
                 std::vector<NamedNumber>* out) {
    const size_t prefixLength = strlen(prefix);
    for (const NamedValue& entry : table) {
        const bool prefixed = strncmp(entry.name, prefix, prefixLength) == 0;
        out->push_back({prefixed ? entry.name + prefixLength : entry.name, entry.value});
        if (withFull && prefixed && prefixLength > 0) {
            out->push_back({entry.name, entry.value});
        }
    }
}

std::vector<NamedNumber> Table(NameTable table, bool withFull) {
    std::vector<NamedNumber> out;
    switch (table) {
        case NameTable::Capabilities:
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
            break;
        case NameTable::StandardTags:
            AppendTable(kStandardTags, "", withFull, &out);
            break;
        case NameTable::PixelFormats:
            AppendTable(kPixelFormats, "HAL_PIXEL_FORMAT_", withFull, &out);
            break;
        case NameTable::StreamRoles:
            for (size_t i = 0; i < std::size(Lumora::kStreamRoles); ++i) {
                out.push_back({Lumora::kStreamRoles[i].name, static_cast<int64_t>(i)});
                if (withFull) {
                    out.push_back({std::string("EStreamType") + Lumora::kStreamRoles[i].name,
                                   static_cast<int64_t>(i)});
                }
            }
            break;
        case NameTable::UsageBits:
            AppendTable(kUsageBits, "GRALLOC_USAGE_", withFull, &out);
            break;
        case NameTable::DataSpaces:
            AppendTable(kDataSpaces, "HAL_DATASPACE_", withFull, &out);
            break;
        case NameTable::StreamTypes:
            AppendTable(kStreamTypes, "CAMERA3_STREAM_", withFull, &out);
            break;
        case NameTable::StreamUseCases:
            AppendTable(kStreamUseCases, "StreamUseCase", withFull, &out);
            break;
        case NameTable::DynamicRangeProfiles:
            AppendTable(kDynamicRangeProfiles, "", withFull, &out);
            break;
    }
    return out;
}

}  // namespace

std::vector<NamedNumber> ListNames(NameTable table) {
    return Table(table, false);
}

std::vector<std::string> AcceptedNames(NameTable table) {
    std::vector<std::string> names;
    for (const NamedNumber& entry : Table(table, true)) {
        names.push_back(entry.name);
    }
    return names;
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
    for (const NamedNumber& entry : Table(table, true)) {
        if (entry.name == name) {
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

ElementType ElementTypeOf(int type) {
    switch (type) {
        case TYPE_BYTE:
            return ElementType::Byte;
        case TYPE_INT32:
            return ElementType::Int32;
        case TYPE_FLOAT:
            return ElementType::Float;
        case TYPE_INT64:
            return ElementType::Int64;
        default:
            return ElementType::Unknown;
    }
}

}  // namespace

ElementType StandardTagType(uint32_t tag) {
    return ElementTypeOf(get_camera_metadata_tag_type(tag));
}

ElementType VendorTagType(uint32_t index) {
    return ElementTypeOf(Lumora::VendorTagType(index));
}

const char* ElementTypeName(ElementType type) {
    switch (type) {
        case ElementType::Byte:
            return "bytes";
        case ElementType::Int32:
            return "int32";
        case ElementType::Float:
            return "float";
        case ElementType::Int64:
            return "int64";
        case ElementType::Unknown:
            break;
    }
    return "unknown";
}

namespace {

struct NameListing {
    const char* name;
    NameTable table;
    bool hex;  // values in hexadecimal (tags)
};

constexpr NameListing kListings[] = {
    {"caps", NameTable::Capabilities, false},
    {"tags", NameTable::StandardTags, true},
    {"formats", NameTable::PixelFormats, false},
    {"roles", NameTable::StreamRoles, false},
};

}  // namespace

int RunNamesCommand(const CommandLine& line) {
    const std::string& which = line.operands.front();
    std::vector<std::string> known;
    for (const NameListing& listing : kListings) {
        known.push_back(listing.name);
        if (which != listing.name) {
            continue;
        }
        for (const NamedNumber& entry : ListNames(listing.table)) {
            if (listing.hex) {
                printf("0x%" PRIX64 "\t%s\n", static_cast<uint64_t>(entry.value),
                       entry.name.c_str());
            } else {
                printf("%" PRId64 "\t%s\n", entry.value, entry.name.c_str());
            }
        }
        return kExitDone;
    }
    const std::string closest = ClosestName(which, known);
    throw UsageError("no list named '" + which + "'" +
                     (closest.empty() ? "; the lists are caps, tags, formats and roles"
                                      : " (did you mean '" + closest + "'?)"));
}

}  // namespace UilayerSim
