// The configuration steps of a session, named once in the order the library
// runs them: the steps of ParseStaticCapabilities (session parameters, then
// the feature steps), then the two steps of ParseStreamCapabilities. The
// session's driver runs them from this list; host tools take the names from
// it.
#ifndef LUMORA_CONFIGURATION_STEPS_H
#define LUMORA_CONFIGURATION_STEPS_H

#include <cstdint>

namespace Lumora {

enum class EConfigStep : uint8_t {
    ParseSessionParams,
    ConfigSupportCapsBokeh,
    ConfigSensorNameMap,
    ConfigRAWQCFAFullSize,
    ConfigSupportCapsSAT,
    ConfigSupportCapsSHDR,
    ConfigSupportCaps2x2QCFA,
    ConfigXCFA2SwitchZoomRatio,
    ConfigureSensorDCGVSStreamingByCaps,
    ConfigWarmStart,
    ConfigAIAF,
    ConfigStaticTuningPolicy,
    ConfigStarModeAEInfo,
    ConfigEISMode,
    ConfigSupportCapsAINR,
    ConfigSupportCapsFlowControl,
    ConfigVideoWatermarkEnable,
    ConfigSupportCapsProVideoIZoom,
    ParseStreamsInfo,
    SelectLowlatencyPipeline,
    Count,
};

constexpr uint32_t kConfigStepCount = static_cast<uint32_t>(EConfigStep::Count);

// The name of each step, as the library's functions and log lines call it.
constexpr const char* kConfigStepNames[kConfigStepCount] = {
    "ParseSessionParams",
    "ConfigSupportCapsBokeh",
    "ConfigSensorNameMap",
    "ConfigRAWQCFAFullSize",
    "ConfigSupportCapsSAT",
    "ConfigSupportCapsSHDR",
    "ConfigSupportCaps2x2QCFA",
    "ConfigXCFA2SwitchZoomRatio",
    "ConfigureSensorDCGVSStreamingByCaps",
    "ConfigWarmStart",
    "ConfigAIAF",
    "ConfigStaticTuningPolicy",
    "ConfigStarModeAEInfo",
    "ConfigEISMode",
    "ConfigSupportCapsAINR",
    "ConfigSupportCapsFlowControl",
    "ConfigVideoWatermarkEnable",
    "ConfigSupportCapsProVideoIZoom",
    "ParseStreamsInfo",
    "SelectLowlatencyPipeline",
};

constexpr const char* ConfigStepName(EConfigStep step) {
    return kConfigStepNames[static_cast<uint32_t>(step)];
}

// The first step of ParseStreamCapabilities; the steps before it belong to
// ParseStaticCapabilities.
constexpr EConfigStep kFirstStreamStep = EConfigStep::ParseStreamsInfo;

}  // namespace Lumora

#endif  // LUMORA_CONFIGURATION_STEPS_H
