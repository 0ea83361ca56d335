// Client package policy: the client's names, its kind and what follows from it.
#include <HostPlatformExtras.h>
#include <cutils/properties.h>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class ClientPackagePolicyTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        OpenSingle();
        HostPlatform::TakeSwitchLogEnableCalls();
    }

    // The client bits 55 54 57 58 56 73 of a session of this client, e.g.
    // "100000" for the system camera.
    std::string ClientBits(const std::string& package, bool cameraUnit = false) {
        StreamConfig config;
        SetClient(config, package);
        if (cameraUnit) {
            config.SessionParams().VendorByte(kTagCameraUnitPackage, 1);
        }
        CameraLog();
        Configure(config);
        std::string bits;
        for (DesiredSupportCaps caps : {CapsSystemCameraClient, CapsCameraUnitSdk, CapsScanMode,
                                        CapsEngineerMode, CapsThirdPartyClient, CapsCtsVerifier}) {
            bits += Has(caps) ? '1' : '0';
        }
        return bits;
    }
};

TEST_F(ClientPackagePolicyTest, ClientKindByPackagePrefix) {
    LoadConfig(
        "[PackageName Group]\nSystemCamera = com.lumo.camera\nEngineerMode = com.lumo.camera.eng\n"
        "ScanMode = com.lumo.scan\nctsVerifier = android.cts\n");
    EXPECT_EQ("000010", ClientBits("com.example.app"));
    EXPECT_EQ("100000", ClientBits("com.lumo.camera.beta"));
    EXPECT_EQ("100100", ClientBits("com.lumo.camera.eng"));  // both kinds at once
    EXPECT_EQ("001010", ClientBits("com.lumo.scan.qr"));
    EXPECT_EQ("000011", ClientBits("android.cts.verifier"));
    EXPECT_EQ("000010", ClientBits("com.lumo"));
    // The camera unit is a system camera client, but not the system camera app.
    EXPECT_EQ("110000", ClientBits("com.example.app", true));
    EXPECT_TRUE(LoggedExactly("I get is.sdk.camera.package successfully, m_isCameraUint 1"));
    EXPECT_TRUE(Has(CapsSystemCamera));
    EXPECT_FALSE(Has(CapsSystemCameraApp));
    // Camera logging is switched on for system camera clients only, once per session.
    EXPECT_EQ((std::vector<int>{0, 1, 1, 0, 0, 0, 1}), HostPlatform::TakeSwitchLogEnableCalls());
}

TEST_F(ClientPackagePolicyTest, UnconfiguredStringsStandForNA) {
    EXPECT_EQ("000010", ClientBits("com.example.app"));
    EXPECT_EQ("101101", ClientBits("NAvigator"));
    EXPECT_EQ("000010", ClientBits("na.lower"));
    // A key with no value is not configured; an empty string matches everyone.
    LoadConfig("[PackageName Group]\nSystemCamera =\nEngineerMode = \"\"\n");
    EXPECT_EQ("000100", ClientBits("com.example.app"));
    EXPECT_EQ("101101", ClientBits("NAvigator"));
}

TEST_F(ClientPackagePolicyTest, NameLengthLimitsAndMessages) {
    const std::string package80(80, 'p');
    const std::string activity80(80, 'a');
    StreamConfig config;
    SetClient(config, package80, activity80);
    Configure(config);
    EXPECT_STREQ(package80.c_str(), m_parser->GetPackageName());
    EXPECT_STREQ(activity80.c_str(), m_parser->GetActivityName());
    EXPECT_FALSE(LoggedContaining("no find vendor tags com.tavro.activityName"));

    // 81 bytes are not taken; only the activity complains.
    CameraLog();
    StreamConfig longer;
    SetClient(longer, std::string(81, 'q'), std::string(81, 'b'));
    Configure(longer);
    EXPECT_STREQ(package80.c_str(), m_parser->GetPackageName());
    EXPECT_STREQ(activity80.c_str(), m_parser->GetActivityName());
    EXPECT_TRUE(LoggedExactly("I find vendor tags com.tavro.packageName"));
    EXPECT_TRUE(LoggedExactly("E no find vendor tags com.tavro.activityName"));
    EXPECT_FALSE(LoggedContaining("get packageName successfully"));

    // A shorter name replaces the whole earlier one.
    StreamConfig shorter;
    SetClient(shorter, "com.ex", "Main");
    Configure(shorter);
    EXPECT_STREQ("com.ex", m_parser->GetPackageName());
    EXPECT_STREQ("Main", m_parser->GetActivityName());

    // Absent names: only the package complains.
    CameraLog();
    StreamConfig none;
    Configure(none);
    EXPECT_TRUE(LoggedExactly("E cannot find vendor tags com.tavro.packageName"));
    EXPECT_FALSE(LoggedContaining("activityName"));
}

TEST_F(ClientPackagePolicyTest, ExtendedModeStreamsOfOtherClientsAreFlagged) {
    LoadConfig("[PackageName Group]\nSystemCamera = com.lumo\nEngineerMode = com.eng\n");
    for (const std::string package : {"com.example.app", "com.lumo", "com.eng"}) {
        StreamConfig config;
        SetClient(config, package);
        StreamSetup extended = PreviewStream();
        extended.extMode = 2;
        StreamSetup other = PreviewStream();
        other.extMode = 1;
        camera3_stream_t* a = config.Add(extended);
        camera3_stream_t* b = config.Add(other);
        b->ext_stream_flags = 5;
        a->ext_stream_flags = 3;
        Configure(config);
        EXPECT_EQ(package == "com.example.app" ? 16u : 3u, a->ext_stream_flags) << package;
        EXPECT_EQ(5u, b->ext_stream_flags) << package;
        EXPECT_TRUE(Has(CapsExtModeStream)) << package;
    }
    ClientBits("com.example.app");
    EXPECT_FALSE(Has(CapsExtModeStream));
}

TEST_F(ClientPackagePolicyTest, GenericSystemImageFromProperties) {
    auto gsiFlag = [this]() {
        ClientBits("com.example.app");
        const std::string line = "I get is.sdk.camera.package successfully, m_isGSIBuild ";
        return LoggedExactly(line + "1") ? 1 : LoggedExactly(line + "0") ? 0 : -1;
    };
    HostPlatform::ResetProperties();
    EXPECT_EQ(1, gsiFlag());  // unset properties read as the platform's own brand
    property_set("ro.product.brand", "Lumo");
    property_set("ro.build.product", "lumo_phone");
    EXPECT_EQ(0, gsiFlag());
    property_set("ro.product.system.brand", "Android_x");
    EXPECT_EQ(1, gsiFlag());
    property_set("ro.product.system.brand", "");
    property_set("ro.build.product", "generic_arm64");
    EXPECT_EQ(1, gsiFlag());
    EXPECT_TRUE(Has(CapsThirdPartyClient));
}

}  // namespace
}  // namespace LumoraTest
