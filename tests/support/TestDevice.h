// Test support: the host kit's builders under the names the tests use, the
// client of a session, and the base fixture with a clean platform and helpers
// to look at the logs.
#ifndef LUMORA_TEST_DEVICE_H
#define LUMORA_TEST_DEVICE_H

#include <HostKit/CameraTable.h>
#include <HostKit/Capture.h>
#include <HostKit/DeviceRoot.h>
#include <HostKit/Metadata.h>
#include <HostKit/StreamConfig.h>
#include <HostPlatform.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IuiLayer.h"
#include "common/VendorTags.h"

namespace LumoraTest {

using HostKit::CameraSetup;
using HostKit::CameraTable;
using HostKit::DeviceRoot;
using HostKit::JpegStream;
using HostKit::Metadata;
using HostKit::MultiCamera;
using HostKit::PhysicalCamera;
using HostKit::PreviewStream;
using HostKit::RawStream;
using HostKit::Request;
using HostKit::Result;
using HostKit::SingleCamera;
using HostKit::StreamConfig;
using HostKit::StreamSetup;
using HostKit::VideoStream;
using HostKit::YuvSnapshotStream;

// The client named in the session parameters.
inline void SetClient(StreamConfig& config, const std::string& package,
                      const std::string& activity = "", bool cameraUnit = false) {
    config.SessionParams().VendorString(Lumora::kTagPackageName, package);
    if (!activity.empty()) {
        config.SessionParams().VendorString(Lumora::kTagActivityName, activity);
    }
    if (cameraUnit) {
        config.SessionParams().VendorByte(Lumora::kTagCameraUnitPackage, 1);
    }
}

// Base fixture: a clean platform (empty configuration, no properties, every log
// switch on, logs drained) and helpers to look at the logs.
class UiLayerTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Loads a configuration text; fails the test when it is refused.
    void LoadConfig(const std::string& text);
    // The camera log since the last call ("I message" lines).
    std::vector<std::string> CameraLog();
    // True when some camera log line since the last call equals `line`.
    bool LoggedExactly(const std::string& line);
    // True when some camera log line since the last call contains `text`.
    bool LoggedContaining(const std::string& text);

private:
    std::vector<std::string> m_pendingLog;
    void Drain();
};

}  // namespace LumoraTest

#endif  // LUMORA_TEST_DEVICE_H
