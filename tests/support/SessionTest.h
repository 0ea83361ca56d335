// The fixture of the session tests: a device, its parser and a configuration
// run the way the HAL runs it; or a session object built from the device, with
// one request record and one last result, to drive the request path directly.
#ifndef LUMORA_TEST_SESSION_TEST_H
#define LUMORA_TEST_SESSION_TEST_H

#include <initializer_list>
#include <memory>
#include <string>

#include "requestdesiredcaps/RequestDesiredCapabilities.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"
#include "support/RequestPathTestPeer.h"
#include "support/TestDevice.h"

namespace LumoraTest {

// The set of exactly these bits.
Lumora::_CapsBitset BitsOf(std::initializer_list<size_t> bits);

class SessionTest : public UiLayerTest {
protected:
    void SetUp() override;

    // Hands the cameras added to m_device to the library and takes the parser
    // of `cameraId`.
    void Start(unsigned int cameraId = 0);
    // A device of only this camera and the parser of its framework id.
    void Open(const CameraSetup& camera);
    void OpenSingle(const std::string& sensor = "imx766");
    void OpenMulti(uint32_t count);

    // Both configuration calls in the HAL's order on the parser taken (camera
    // 0's when none was), expecting success; the first call's status.
    int Configure(StreamConfig& config);
    // The same on the parser of `cameraId`.
    int Configure(StreamConfig& config, unsigned int cameraId);
    // The same on a new parser, so that nothing of an earlier session (such as
    // the client names) carries over.
    int ConfigureFresh(StreamConfig& config, unsigned int cameraId = 0);
    // The role of a stream configured alone.
    Lumora::StreamType ClassifyAlone(const StreamSetup& setup, uint32_t operationMode = 0);
    bool Has(Lumora::DesiredSupportCaps caps, uint32_t type = Lumora::TypeLogicalCamera);

    // A session object of camera 0 (`camera`); `extraCameras` more cameras
    // without a record only raise the device's camera count.
    void Build(const CameraSetup& camera, size_t extraCameras = 0);
    int Update(Request& request);
    Lumora::_CapsBitset Caps(uint32_t type) const;

    CameraTable m_device;
    std::shared_ptr<Lumora::IuiLayer> m_parser;
    std::unique_ptr<Lumora::StaticSupportCapabilities> m_session;
    std::unique_ptr<Lumora::RequestPathTestPeer> m_peer;
    Lumora::RequestDesiredCapabilities m_record;
    Lumora::ResultAppliedCapabilities m_lastResult;
};

}  // namespace LumoraTest

#endif  // LUMORA_TEST_SESSION_TEST_H
