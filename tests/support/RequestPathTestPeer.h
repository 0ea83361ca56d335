// Test access to the session inputs that the request path reads, for tests
// that drive a session object directly instead of through a configuration.
#ifndef LUMORA_REQUEST_PATH_TEST_PEER_H
#define LUMORA_REQUEST_PATH_TEST_PEER_H

#include <cstdint>
#include <vector>

#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

class RequestPathTestPeer {
public:
    explicit RequestPathTestPeer(StaticSupportCapabilities& session) : m_session(session) {}

    void SetOperationMode(uint32_t mode) { m_session.m_operationMode = mode; }
    void SetMaxFps(int32_t fps) { m_session.m_maxFps = fps; }
    void SetWarmStartLux(float lux) { m_session.m_warmStartLux = lux; }
    void SetFromMainMenu(uint8_t fromMainMenu) { m_session.m_cameraIsFromMainMenu = fromMainMenu; }
    // Session caps of the logical camera, or of the camera entry at `entry`.
    void SetSessionCaps(DesiredSupportCaps caps) { m_session.m_supportCaps.set(caps); }
    void SetCameraCaps(uint32_t entry, DesiredSupportCaps caps, bool on = true) {
        m_session.m_cameraSupportCaps[entry].set(caps, on);
    }
    void SetZoomThresholds(const std::vector<float>& ratios) {
        m_session.m_XCFA2SwitchZoomRatio = ratios;
    }
    void AddStream(StreamType type, camera3_stream_t* stream) {
        m_session.m_streamInfo[type].push_back({0, -1, stream});
    }
    _WarmStartParam& WarmStart(uint32_t physicalCamId) {
        return m_session.m_warmStartParam[physicalCamId];
    }

    void ConfigWarmStart() { m_session.ConfigWarmStart(); }
    void ConfigTuning() {
        m_session.ConfigAIAF();
        m_session.ConfigStaticTuningPolicy();
        m_session.ConfigStarModeAEInfo();
    }
    uint32_t Feature1Count() const { return m_session.m_feature1TuningPolicyNum; }
    uint32_t Feature2Count() const { return m_session.m_feature2TuningPolicyNum; }
    const int32_t* Feature2(uint32_t i) const { return m_session.m_feature2TuningPolicy[i].value; }

private:
    StaticSupportCapabilities& m_session;
};

}  // namespace Lumora

#endif  // LUMORA_REQUEST_PATH_TEST_PEER_H
