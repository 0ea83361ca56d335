#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "common/Platform.h"
#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using Lumora::IuiLayer;

class RegistryTest : public UiLayerTest {
protected:
    void TearDown() override {
        unsetenv("UILAYER_DEVICE_ROOT");
        UiLayerTest::TearDown();
    }
};

TEST_F(RegistryTest, SameParserForTheSameCameraUntilInit) {
    CameraTable device;
    device.Add(SingleCamera("imx766"));
    device.Init();
    std::shared_ptr<IuiLayer> first = IuiLayer::Get(0);
    std::shared_ptr<IuiLayer> second = IuiLayer::Get(0);
    EXPECT_EQ(first.get(), second.get());
    EXPECT_NE(first.get(), IuiLayer::Get(1).get());

    device.Init();
    std::shared_ptr<IuiLayer> third = IuiLayer::Get(0);
    EXPECT_NE(first.get(), third.get());
    // The dropped parser stays usable while a caller holds it.
    EXPECT_EQ(0, first->GetFwkCameraIdByCameraIndex(0));
    EXPECT_EQ(-1, first->GetFwkCameraIdByCameraIndex(1));
}

TEST_F(RegistryTest, ConcurrentGetHandsOutOneParser) {
    CameraTable device;
    device.Add(SingleCamera("imx766"));
    device.Init();
    constexpr int kThreads = 8;
    std::vector<IuiLayer*> seen(kThreads, nullptr);
    std::atomic<bool> go{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            while (!go.load()) {
            }
            seen[t] = IuiLayer::Get(3).get();
        });
    }
    go = true;
    for (auto& thread : threads) {
        thread.join();
    }
    for (IuiLayer* parser : seen) {
        EXPECT_EQ(seen[0], parser);
    }
}

TEST_F(RegistryTest, FailedReloadOfTheSiblingKeepsTheLookupSilently) {
    CameraTable device;
    device.Add(SingleCamera("imx766"));
    device.Init();
    auto* lookup = GetVendorTagId;
    ASSERT_NE(nullptr, lookup);
    CameraLog();

    setenv("UILAYER_DEVICE_ROOT", "/nonexistent-device-root", 1);
    IuiLayer::Init(device.Count(), device.Table());
    EXPECT_EQ(lookup, GetVendorTagId);
    EXPECT_TRUE(CameraLog().empty());
    EXPECT_TRUE(HostPlatform::TakeAndroidLog().empty());
}

TEST_F(RegistryTest, SiblingWithoutTheSymbolClearsTheLookup) {
    char root[] = "/tmp/uilayer-root-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(root));
    const std::string dir = std::string(root) + "/odm/lib64/hw";
    ASSERT_EQ(0, system(("mkdir -p " + dir).c_str()));
    // Any shared library of the target without the symbol will do.
    ASSERT_EQ(
        0, system(("cp " UILAYER_TEST_FOREIGN_LIBRARY " " + dir + "/camera.lumora.v2.so").c_str()));
    setenv("UILAYER_DEVICE_ROOT", root, 1);
    IuiLayer::Init(0, nullptr);
    EXPECT_EQ(nullptr, GetVendorTagId);
    EXPECT_TRUE(LoggedExactly("E dlsym LumoraGetVendorTagId fail!"));

    // A parser can still be created; it finds no record.
    EXPECT_FALSE(IuiLayer::Get(0)->IsSessionSupportCaps(Lumora::CapsStreamPreview,
                                                        Lumora::TypeLogicalCamera));
    unsetenv("UILAYER_DEVICE_ROOT");
    IuiLayer::Init(0, nullptr);
    EXPECT_NE(nullptr, GetVendorTagId);
    ASSERT_EQ(0, system(("rm -rf " + std::string(root)).c_str()));
}

TEST_F(RegistryTest, UnknownFrameGivesNoStreamListAndLogsTheRingError) {
    CameraTable device;
    device.Add(SingleCamera("imx766"));
    device.Init();
    auto parser = IuiLayer::Get(0);
    CameraLog();
    EXPECT_EQ(nullptr, parser->GetStreamByStreamType(12u, Lumora::EStreamTypePreview));
    EXPECT_TRUE(
        LoggedExactly("E GetRDC return NULL. index:12 frameNum:12 GetFrameworkFramenum:65535"));
    EXPECT_EQ(0xFFFFFFFFu, parser->GetOriginalRequestTuningMode(12, Lumora::TypeFeature1Snapshot));
    EXPECT_TRUE(LoggedExactly("E Failed to get RDC for frame 12"));
}

TEST_F(RegistryTest, CameraWithoutRecordSupportsNothing) {
    CameraTable device;
    device.AddWithoutRecord();
    device.Init();
    auto parser = IuiLayer::Get(0);
    EXPECT_TRUE(LoggedExactly("E pCamInfoMap is null"));
    EXPECT_TRUE(LoggedExactly(
        "E m_pCameraInfoMap is NULL for fwkCameraId 0, cannot initialize support caps"));
    StreamConfig config(0x8001);
    config.Add(PreviewStream());
    EXPECT_EQ(0, parser->ParseStaticCapabilities(config.Get()));
    EXPECT_EQ(0, parser->ParseStreamCapabilities(config.Get()));
    EXPECT_FALSE(parser->IsSessionSupportCaps(Lumora::CapsStreamPreview,
                                              static_cast<Lumora::QueryCapsType>(0)));
    EXPECT_EQ(-1, parser->GetFwkCameraIdByCameraIndex(0));
}

class ReadFileTest : public UiLayerTest {};

TEST_F(ReadFileTest, ReportsOpenAndReadFailures) {
    DeviceRoot root;
    root.Activate();
    char buffer[8] = {};
    EXPECT_EQ(-2, Lumora::readFile("/missing", buffer, 4));
    EXPECT_TRUE(
        LoggedExactly("E Unable to open /missing for read error=No such file or directory"));

    root.WriteFile("/empty", "");
    EXPECT_EQ(-1, Lumora::readFile("/empty", buffer, 4));
    EXPECT_TRUE(LoggedContaining("E Unable to read all data from /empty error="));

    root.WriteFile("/value", "123456");
    EXPECT_EQ(0, Lumora::readFile("/value", buffer, 4));
    EXPECT_EQ(std::string("1234"), std::string(buffer, 4));
    EXPECT_EQ('\0', buffer[4]);
}

}  // namespace
}  // namespace LumoraTest
