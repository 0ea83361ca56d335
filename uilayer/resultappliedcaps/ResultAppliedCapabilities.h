// Applied auto-exposure information of the latest capture result, handed to
// every later request so that it can follow what the exposure control planned.
#ifndef LUMORA_RESULT_APPLIED_CAPABILITIES_H
#define LUMORA_RESULT_APPLIED_CAPABILITIES_H

#include <hardware/camera3.h>

#include <cstdint>

namespace Lumora {

class StaticSupportCapabilities;

// One camera's AEC record, identical in memory and in the result payload.
struct AecInfo {
    int32_t cameraId;
    float aecValue1;
    float aecValue2;
    int32_t expCount;
    uint32_t extra;
};
static_assert(sizeof(AecInfo) == 20, "AEC records are 20 bytes");

constexpr uint32_t kAecInfoCount = 8;

// Byte offset of the enable switch (uint32) in the MLFT parameter block.
constexpr size_t kMlftSwitchOffset = 1800;

class ResultAppliedCapabilities {
public:
    ResultAppliedCapabilities();
    ~ResultAppliedCapabilities();

    // Forgets every record and the MLFT switch (the next stream configuration).
    void Initialize();
    int32_t UpdateResultAppliedCaps(const camera3_capture_result* result,
                                    const StaticSupportCapabilities* session);

    uint32_t m_isEnableMlft;
    AecInfo m_lastReqCameraAECInfo[kAecInfoCount];
};

}  // namespace Lumora

#endif  // LUMORA_RESULT_APPLIED_CAPABILITIES_H
