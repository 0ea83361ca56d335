// The stream combinations the camera framework guarantees to configure, by
// hardware level and capability, as data: each stream is a kind (PRIV, YUV,
// JPEG, RAW) and a size class (PREVIEW, RECORD, MAXIMUM, VGA) that a device's
// full pixel array turns into a size.
#ifndef UILAYER_SIM_STREAM_COMBINATIONS_H
#define UILAYER_SIM_STREAM_COMBINATIONS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/Scenario.h"

namespace UilayerSim {

// The names of these enumerations are kept by position: add at the end.
enum class StreamKind { Priv, Yuv, Jpeg, Raw };
enum class SizeClass { Preview, Record, Maximum, Vga };

// The framework's public stream use cases (the stream record's use case field).
enum class StreamUseCase : int64_t {
    Default = 0,
    Preview = 1,
    StillCapture = 2,
    VideoRecord = 3,
    PreviewVideoStill = 4,
    VideoCall = 5,
    CroppedRaw = 6,
};

// The tables, in the order a sweep runs them.
enum class CombinationTable { Legacy, Limited, Full, Raw, Level3, TenBit, UseCases, HighSpeed };

enum class HardwareLevel { Legacy, Limited, Full, Level3 };
// The levels by name, in HardwareLevel order.
inline constexpr const char* kLevelNames[] = {"legacy", "limited", "full", "3"};

struct StreamTarget {
    StreamKind kind = StreamKind::Priv;
    SizeClass size = SizeClass::Preview;
    StreamUseCase useCase = StreamUseCase::Default;
    bool encoder = false;  // a PRIV stream for the video encoder at any size
};

struct StreamCombination {
    CombinationTable table = CombinationTable::Legacy;
    std::vector<StreamTarget> streams;
};

// Which tables a sweep takes: every table up to the level, plus the optional
// ones. Level 3 devices are RAW capable, so level 3 takes the RAW table too. A
// constrained high-speed session takes the high-speed table alone.
struct CombinationSelection {
    HardwareLevel level = HardwareLevel::Full;
    bool raw = false;
    bool tenBit = false;
    bool useCases = false;
    bool highSpeed = false;
};

struct StreamSize {
    uint32_t width = 0;
    uint32_t height = 0;
};

// The sizes of the four size classes for one camera.
struct SizeClasses {
    StreamSize preview;
    StreamSize record;
    StreamSize maximum;
    StreamSize vga;

    StreamSize Of(SizeClass size) const;
};

// PREVIEW: 1920x1080, or the full array when that does not fit; RECORD:
// 3840x2160, or the largest 16:9 size inside the full array; MAXIMUM: the
// full array; VGA: 640x480.
SizeClasses SizesForArray(uint32_t width, uint32_t height);

// Every combination of the selected tables, table by table in table order.
std::vector<StreamCombination> GuaranteedCombinations(const CombinationSelection& selection);

const char* TableName(CombinationTable table);

// The name of `value` in a table of names indexed by the value.
template <typename Enum, size_t N>
const char* NameOf(const char* const (&names)[N], Enum value) {
    return names[static_cast<size_t>(value)];
}
// "PRIV PREVIEW", with "[HLG10]" for a ten-bit stream, "[STILL_CAPTURE]"
// for a use case and "[VIDEO]" for the encoder's stream.
std::string StreamLabel(const StreamTarget& target, CombinationTable table);
std::string CombinationLabel(const StreamCombination& combination);

// The output stream the framework configures for `target` (a PRIV stream
// other than RECORD goes to the screen; ten-bit PRIV and YUV streams are HLG10).
StreamSetup MakeStream(const StreamTarget& target, CombinationTable table, const SizeClasses& sizes,
                       const std::string& name);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_STREAM_COMBINATIONS_H
