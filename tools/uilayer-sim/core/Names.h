// Names the simulator reads and prints: capability bits, stream roles, pixel
// formats, usage bits, data spaces, stream use cases, dynamic range profiles
// and metadata tags.
#ifndef UILAYER_SIM_NAMES_H
#define UILAYER_SIM_NAMES_H

#include <cstdint>
#include <string>
#include <vector>

namespace UilayerSim {

// Element type of a metadata entry, as the metadata store keeps it.
enum class ElementType { Byte, Int32, Float, Int64, Unknown };

// Display name of capability bit `bit` (0..99): the enumerator name, both
// names for a bit that has two ("CapsSensorModeFlag81/Caps4x4Izoom"), or
// "bitN" for a bit that has no name.
std::string CapabilityName(uint32_t bit);
// Bit of a capability name (either name of a shared bit); false when unknown.
bool CapabilityByName(const std::string& name, uint32_t* bit);

// Role name without its prefix ("Preview"); "None" for 0 and "Type<N>" for
// values outside the table.
std::string StreamRoleName(int32_t role);
// Standard metadata tags by their public names ("ANDROID_CONTROL_ZOOM_RATIO").
bool StandardTagByName(const std::string& name, uint32_t* tag);
// Public name of a standard tag, or its number in hexadecimal.
std::string StandardTagName(uint32_t tag);
// Element type of a standard tag; Unknown for a tag the metadata store lacks.
ElementType StandardTagType(uint32_t tag);
// Element type of a vendor tag index, as the sibling camera layer defines it.
ElementType VendorTagType(uint32_t index);
const char* ElementTypeName(ElementType type);

// The name tables above, for listings and for "did you mean".
enum class NameTable {
    Capabilities,
    StandardTags,
    PixelFormats,
    StreamRoles,
    UsageBits,
    DataSpaces,
    StreamTypes,
    StreamUseCases,
    DynamicRangeProfiles,
    OperationModes,
};

// Every name a lookup of `table` accepts, short and full.
std::vector<std::string> AcceptedNames(NameTable table);
// The value of a name of `table` other than Capabilities, full
// ("HAL_PIXEL_FORMAT_RAW16", "EStreamTypePreview") or short ("RAW16",
// "Preview"; formats and data spaces in any case); false when unknown.
bool NumberByName(NameTable table, const std::string& name, int64_t* value);
// The short name of `value` in `table`, or the number when it has none.
std::string NameOfNumber(NameTable table, int64_t value);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_NAMES_H
