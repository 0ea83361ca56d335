// Shared fixture of the session feature tests: a device, one configuration run
// as the HAL does it, the client named in the session parameters, caps lookups.
#ifndef LUMORA_FEATURE_TEST_SUPPORT_H
#define LUMORA_FEATURE_TEST_SUPPORT_H

#include <memory>
#include <string>

#include "support/TestDevice.h"

namespace LumoraTest {

// Vendor tag indices of the session parameters these tests set or read.
constexpr uint32_t kTagPackageName = 34;
constexpr uint32_t kTagCameraUnit = 71;
constexpr uint32_t kTagActivityName = 105;
constexpr uint32_t kTagVideoWatermark = 147;
constexpr uint32_t kTagCameraMode = 160;
constexpr uint32_t kTagAICompositionEnable = 165;
constexpr uint32_t kTagSupportedAINRType = 212;

inline void SetClient(StreamConfig& config, const std::string& package,
                      const std::string& activity = "", bool cameraUnit = false) {
    config.SessionParams().VendorString(kTagPackageName, package);
    if (!activity.empty()) {
        config.SessionParams().VendorString(kTagActivityName, activity);
    }
    if (cameraUnit) {
        config.SessionParams().VendorByte(kTagCameraUnit, 1);
    }
}

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
