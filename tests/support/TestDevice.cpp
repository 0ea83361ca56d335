#include "support/TestDevice.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstdlib>

namespace LumoraTest {

void UiLayerTest::SetUp() {
    HostPlatform::ResetProperties();
    HostPlatform::SetLogSwitches(true, true, true, true, true);
    ASSERT_EQ(0, HostPlatform::LoadConfiguration(""));
    unsetenv("UILAYER_DEVICE_ROOT");
    Drain();
    m_pendingLog.clear();
}

void UiLayerTest::TearDown() {
    HostPlatform::TakeAndroidLog();
    HostPlatform::TakeCameraLog();
}

void UiLayerTest::LoadConfig(const std::string& text) {
    ASSERT_EQ(0, HostPlatform::LoadConfiguration(text.c_str())) << "configuration refused";
}

void UiLayerTest::Drain() {
    for (std::string& line : HostPlatform::TakeCameraLog()) {
        m_pendingLog.push_back(std::move(line));
    }
    HostPlatform::TakeAndroidLog();
}

std::vector<std::string> UiLayerTest::CameraLog() {
    Drain();
    std::vector<std::string> lines;
    lines.swap(m_pendingLog);
    return lines;
}

bool UiLayerTest::LoggedExactly(const std::string& line) {
    Drain();
    return std::find(m_pendingLog.begin(), m_pendingLog.end(), line) != m_pendingLog.end();
}

bool UiLayerTest::LoggedContaining(const std::string& text) {
    Drain();
    return std::any_of(m_pendingLog.begin(), m_pendingLog.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

}  // namespace LumoraTest
