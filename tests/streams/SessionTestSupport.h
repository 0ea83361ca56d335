// Fixture for session tests: a device, its parser, and a configuration run
// the way the HAL runs it (static capabilities first, then the streams).
#ifndef LUMORA_TEST_STREAMS_SESSION_SUPPORT_H
#define LUMORA_TEST_STREAMS_SESSION_SUPPORT_H

#include <cutils/properties.h>

#include <memory>
#include <string>

#include "support/TestDevice.h"

namespace LumoraTest {

class SessionTest : public UiLayerTest {
protected:
    void SetUp() override {
        UiLayerTest::SetUp();
        // Not a generic system image, so every client is an ordinary app.
        property_set("ro.product.brand", "Brand");
        property_set("ro.build.product", "device");
    }

    // Initialises the device (cameras added before) and takes a parser.
    void Start(unsigned int cameraId = 0) {
        device.Init();
        layer = Lumora::IuiLayer::Get(cameraId);
        ASSERT_NE(nullptr, layer);
    }
    void StartSingle(const std::string& sensor = "imx766") {
        device.AddCamera(TestDevice::SingleCamera(sensor));
        Start();
    }
    void Configure(StreamConfig& config) {
        ASSERT_EQ(0, layer->ParseStaticCapabilities(config.Get()));
        ASSERT_EQ(0, layer->ParseStreamCapabilities(config.Get()));
    }
    // The role of a stream configured alone.
    Lumora::StreamType ClassifyAlone(const StreamSetup& setup, uint32_t operationMode = 0) {
        StreamConfig config(operationMode);
        camera3_stream_t* stream = config.Add(setup);
        Configure(config);
        return layer->GetStreamTypeByStream(stream);
    }
    bool Has(Lumora::DesiredSupportCaps bit, uint32_t type = Lumora::TypeLogicalCamera) {
        return layer->IsSessionSupportCaps(bit, static_cast<Lumora::QueryCapsType>(type));
    }

    TestDevice device;
    std::shared_ptr<Lumora::IuiLayer> layer;
};

}  // namespace LumoraTest

#endif  // LUMORA_TEST_STREAMS_SESSION_SUPPORT_H
