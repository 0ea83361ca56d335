#include <thread>

#include "support/TestDevice.h"

namespace LumoraTest {
namespace {

using Lumora::IuiLayer;

class RegistryTest : public UiLayerTest {};

TEST_F(RegistryTest, SameParserForTheSameCameraUntilInit) {
    TestDevice device;
    device.AddCamera(TestDevice::SingleCamera("imx766"));
    device.Init();
    std::shared_ptr<IuiLayer> first = IuiLayer::Get(0);
    std::shared_ptr<IuiLayer> second = IuiLayer::Get(0);
    EXPECT_EQ(first.get(), second.get());

    device.Init();
    std::shared_ptr<IuiLayer> third = IuiLayer::Get(0);
    EXPECT_NE(first.get(), third.get());
    // The old parser stays usable while held.
    EXPECT_EQ(0, first->GetFwkCameraIdByCameraIndex(0));
    EXPECT_EQ(-1, first->GetFwkCameraIdByCameraIndex(1));
}

}  // namespace
}  // namespace LumoraTest
