#include "support/SessionTest.h"

#include <cutils/properties.h>

namespace LumoraTest {

Lumora::_CapsBitset BitsOf(std::initializer_list<size_t> bits) {
    Lumora::_CapsBitset set;
    for (size_t bit : bits) {
        set.set(bit);
    }
    return set;
}

void SessionTest::SetUp() {
    UiLayerTest::SetUp();
    // Not a generic system image, so every client is an ordinary app.
    property_set("ro.product.brand", "Brand");
    property_set("ro.build.product", "device");
}

void SessionTest::Start(unsigned int cameraId) {
    m_device.Init();
    m_parser = Lumora::IuiLayer::Get(cameraId);
    ASSERT_NE(nullptr, m_parser);
}

void SessionTest::Open(const CameraSetup& camera) {
    m_device.Clear();
    m_device.Add(camera);
    Start(camera.frameworkId);
}

void SessionTest::OpenSingle(const std::string& sensor) {
    Open(SingleCamera(sensor));
}

void SessionTest::OpenMulti(uint32_t count) {
    Open(MultiCamera(count, 0, 0));
}

int SessionTest::Configure(StreamConfig& config) {
    if (!m_parser) {
        m_parser = Lumora::IuiLayer::Get(0);
    }
    const int status = m_parser->ParseStaticCapabilities(config.Get());
    EXPECT_EQ(0, status);
    EXPECT_EQ(0, m_parser->ParseStreamCapabilities(config.Get()));
    return status;
}

int SessionTest::Configure(StreamConfig& config, unsigned int cameraId) {
    m_parser = Lumora::IuiLayer::Get(cameraId);
    return Configure(config);
}

int SessionTest::ConfigureFresh(StreamConfig& config, unsigned int cameraId) {
    m_parser.reset();
    m_device.Init();
    return Configure(config, cameraId);
}

Lumora::StreamType SessionTest::ClassifyAlone(const StreamSetup& setup, uint32_t operationMode) {
    StreamConfig config(operationMode);
    camera3_stream_t* stream = config.Add(setup);
    Configure(config);
    return m_parser->GetStreamTypeByStream(stream);
}

bool SessionTest::Has(Lumora::DesiredSupportCaps caps, uint32_t type) {
    return m_parser->IsSessionSupportCaps(caps, static_cast<Lumora::QueryCapsType>(type));
}

void SessionTest::Build(const CameraSetup& camera, size_t extraCameras) {
    m_device.Add(camera);
    for (size_t i = 0; i < extraCameras; ++i) {
        m_device.AddWithoutRecord();
    }
    m_device.Init();
    m_session = std::make_unique<Lumora::StaticSupportCapabilities>(
        camera.frameworkId, static_cast<unsigned int>(m_device.Count()), m_device.Table());
    m_peer = std::make_unique<Lumora::RequestPathTestPeer>(*m_session);
    CameraLog();
}

int SessionTest::Update(Request& request) {
    return m_record.UpdatePerRequestCaps(request.Get(), m_session.get(), m_lastResult);
}

Lumora::_CapsBitset SessionTest::Caps(uint32_t type) const {
    return m_record.GetRequestSupportCaps(static_cast<Lumora::QueryCapsType>(type));
}

}  // namespace LumoraTest
