// The operation modes the library tells apart. The framework's own modes are
// the platform's; vendor modes start at 0x8000 and are named here by what the
// rules make of them, or by their number where a rule only lists them. Most
// rules compare the mode masked with kOperationModeMask (the session's
// m_operationMode); the few that use the mode as the framework sent it say so.
#ifndef LUMORA_OPERATION_MODES_H
#define LUMORA_OPERATION_MODES_H

#include <hardware/camera3.h>

#include <cstdint>

namespace Lumora {

constexpr uint32_t kOperationModeMask = 0xF0FF;
// The session's mode before a configuration sets it.
constexpr uint32_t kOperationModeUnset = 0xFFFF;

enum OperationMode : uint32_t {
    kOpModeConstrainedHighSpeed = CAMERA3_STREAM_CONFIGURATION_CONSTRAINED_HIGH_SPEED_MODE,
    // Multi-camera zoom (SAT) modes in which the cameras may fuse.
    kOpModeSat8001 = 0x8001,
    kOpModeSat8009 = 0x8009,
    kOpModeSat8019 = 0x8019,
    // Bokeh (depth effect) modes.
    kOpModeBokeh8010 = 0x8010,
    kOpModeBokeh8011 = 0x8011,
    kOpModeBokeh8030 = 0x8030,
    kOpModeBokeh8031 = 0x8031,
    kOpModeBokeh8035 = 0x8035,
    kOpModeBokeh8036 = 0x8036,
    kOpModeStarMode = 0x80A8,
    kOpModeTeleConverter = 0x80B4,
    kOpModeProVideo = 0x80BE,
    // Modes that the zoom fallback or the extended preview rules list.
    kOpMode800B = 0x800B,
    kOpMode800C = 0x800C,
    kOpMode8021 = 0x8021,
    kOpMode8028 = 0x8028,
    kOpMode8029 = 0x8029,
    kOpMode80A9 = 0x80A9,
    kOpMode80AE = 0x80AE,
    kOpMode80B5 = 0x80B5,
    kOpMode80B6 = 0x80B6,
    kOpMode80B7 = 0x80B7,
};
static_assert(kOpModeConstrainedHighSpeed == 0x1, "constrained high-speed mode");

constexpr bool IsSatFusionMode(uint32_t mode) {
    return mode == kOpModeSat8001 || mode == kOpModeSat8009 || mode == kOpModeSat8019;
}

constexpr bool IsBokehMode(uint32_t mode) {
    return mode == kOpModeBokeh8010 || mode == kOpModeBokeh8011 || mode == kOpModeBokeh8030 ||
           mode == kOpModeBokeh8031 || mode == kOpModeBokeh8035 || mode == kOpModeBokeh8036;
}

// The modes of CapsOpMode80BE8009: they join the pro video family on the
// session and mark every request.
constexpr bool IsProVideoFamilyMode(uint32_t mode) {
    return mode == kOpModeProVideo || mode == kOpModeSat8009;
}

}  // namespace Lumora

#endif  // LUMORA_OPERATION_MODES_H
