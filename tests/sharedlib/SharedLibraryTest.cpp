// Links the shared library the HAL loads (not the static core) and uses only
// what it exports: Init, Get, GetVendorTagId and the virtual operations.
#include <gtest/gtest.h>

#include <HostPlatform.h>

#include "IuiLayer.h"

namespace {

TEST(SharedLibraryTest, ExportedEntryPointsWork) {
    HostPlatform::SetLogSwitches(false, false, false, false, false);
    Lumora::IuiLayer::Init(0, nullptr);
    ASSERT_NE(nullptr, GetVendorTagId);
    EXPECT_NE(0u, GetVendorTagId(5));
    std::shared_ptr<Lumora::IuiLayer> parser = Lumora::IuiLayer::Get(2);
    ASSERT_TRUE(parser);
    EXPECT_EQ(parser.get(), Lumora::IuiLayer::Get(2).get());
    EXPECT_FALSE(
        parser->IsSessionSupportCaps(Lumora::CapsStreamPreview, Lumora::TypeLogicalCamera));
    EXPECT_EQ(-1, parser->GetFwkCameraIdByCameraIndex(0));
}

}  // namespace
