// Shared fixture of the session feature tests: a device, one configuration run
// as the HAL does it, the client named in the session parameters, caps lookups.
#ifndef LUMORA_FEATURE_TEST_SUPPORT_H
#define LUMORA_FEATURE_TEST_SUPPORT_H

#include <memory>

#include "support/TestDevice.h"

namespace LumoraTest {

class FeatureTest : public UiLayerTest {
protected:
    void Configure(StreamConfig& config, unsigned int cameraId = 0) {
        m_parser = Lumora::IuiLayer::Get(cameraId);
        EXPECT_EQ(0, m_parser->ParseStaticCapabilities(config.Get()));
        EXPECT_EQ(0, m_parser->ParseStreamCapabilities(config.Get()));
    }
    // The same on a new parser, so that nothing of an earlier session (such as
    // the client names) carries over.
    void ConfigureFresh(StreamConfig& config, unsigned int cameraId = 0) {
        m_parser.reset();
        m_device.Init();
        Configure(config, cameraId);
    }
    bool Logical(Lumora::DesiredSupportCaps caps) {
        return m_parser->IsSessionSupportCaps(caps, Lumora::TypeLogicalCamera);
    }
    bool Physical(Lumora::DesiredSupportCaps caps, uint32_t physicalCamId) {
        return m_parser->IsSessionSupportCaps(caps,
                                              static_cast<Lumora::QueryCapsType>(physicalCamId));
    }

    TestDevice m_device;
    std::shared_ptr<Lumora::IuiLayer> m_parser;
};

}  // namespace LumoraTest

#endif  // LUMORA_FEATURE_TEST_SUPPORT_H
