// Test access to the session inputs that the request path reads, for tests
// that drive a session object directly instead of through a configuration.
#ifndef LUMORA_REQUEST_PATH_TEST_PEER_H
#define LUMORA_REQUEST_PATH_TEST_PEER_H

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

#include "../../uilayer/requestdesiredcaps/RequestDesiredCapabilities.h"
#include "../../uilayer/staticsupportcaps/StaticSupportCapabilities.h"
#include "support/TestDevice.h"

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

namespace LumoraTest {

// The set of exactly these bits.
inline Lumora::_CapsBitset BitsOf(std::initializer_list<size_t> bits) {
    Lumora::_CapsBitset set;
    for (size_t bit : bits) {
        set.set(bit);
    }
    return set;
}

// A session object built from a test device, with one request record and one
// last result to drive the request path directly.
class SessionFixture : public UiLayerTest {
protected:
    // Camera 0 is `camera`; `extraCameras` more cameras without a record only
    // raise the device's camera count.
    void Build(const CameraSetup& camera, size_t extraCameras = 0) {
        m_device.AddCamera(camera);
        for (size_t i = 0; i < extraCameras; ++i) {
            m_device.AddCameraWithoutRecord();
        }
        m_device.Init();
        m_session = std::make_unique<Lumora::StaticSupportCapabilities>(
            camera.frameworkId, static_cast<unsigned int>(m_device.CameraCount()),
            m_device.Table());
        m_peer = std::make_unique<Lumora::RequestPathTestPeer>(*m_session);
        CameraLog();
    }
    int Update(Request& request) {
        return m_record.UpdatePerRequestCaps(request.Get(), m_session.get(), m_lastResult);
    }
    Lumora::_CapsBitset Caps(uint32_t type) const {
        return m_record.GetRequestSupportCaps(static_cast<Lumora::QueryCapsType>(type));
    }

    TestDevice m_device;
    std::unique_ptr<Lumora::StaticSupportCapabilities> m_session;
    std::unique_ptr<Lumora::RequestPathTestPeer> m_peer;
    Lumora::RequestDesiredCapabilities m_record;
    Lumora::ResultAppliedCapabilities m_lastResult;
};

}  // namespace LumoraTest

#endif  // LUMORA_REQUEST_PATH_TEST_PEER_H
