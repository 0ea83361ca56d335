// Fixture of the session tests: a device, its parser and a one-call
// configuration, with the vendor tag indices the session reads and writes.
#ifndef LUMORA_TEST_SESSION_FIXTURE_H
#define LUMORA_TEST_SESSION_FIXTURE_H

#include <memory>

#include "support/TestDevice.h"

namespace LumoraTest {

class SessionCoreTest : public UiLayerTest {
protected:
    static constexpr uint32_t kTagIsGenericCam = 72;
    static constexpr uint32_t kTagWarmStartLux = 85;
    static constexpr uint32_t kTagFromMainMenu = 109;
    static constexpr uint32_t kTagSnapshotRawFormat = 161;

    // A device with this one camera and the parser of its framework id.
    void Open(const CameraSetup& camera) {
        m_device = std::make_unique<TestDevice>();
        m_device->AddCamera(camera);
        m_device->Init();
        m_parser = Lumora::IuiLayer::Get(camera.frameworkId);
    }
    void OpenSingle() { Open(TestDevice::SingleCamera("imx766")); }
    void OpenMulti(uint32_t count) { Open(TestDevice::MultiCamera(count, 0, 0)); }

    // Both configuration calls, in the HAL's order.
    int Configure(StreamConfig& config) {
        const int status = m_parser->ParseStaticCapabilities(config.Get());
        m_parser->ParseStreamCapabilities(config.Get());
        return status;
    }

    bool Has(Lumora::DesiredSupportCaps caps) {
        return m_parser->IsSessionSupportCaps(caps, Lumora::TypeLogicalCamera);
    }

    std::unique_ptr<TestDevice> m_device;
    std::shared_ptr<Lumora::IuiLayer> m_parser;
};

}  // namespace LumoraTest

#endif  // LUMORA_TEST_SESSION_FIXTURE_H
