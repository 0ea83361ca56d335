// Client package policy: the client's names, its kind and what follows from it.
#include <HostPlatformExtras.h>
#include <cutils/properties.h>

#include <algorithm>
#include <cstring>

#include "session/SessionFixture.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

constexpr const char* kPackageConfig = R"(
[PackageName Group]
SystemCamera = com.lumo.camera
EngineerMode = com.lumo.engineer
ScanMode = com.lumo.scanner
ctsVerifier = android.cts
OisCenterOnApp = com.other.a, com.lumo.camera.ois
)";

class ClientPackagePolicyTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        OpenSingle();
        HostPlatform::TakeSwitchLogEnableCalls();
    }

    // Configures a session for this client and returns the client bits as
    // "55 54 57 58 56 73" flags, e.g. "100010" for the system camera.
    std::string ClientBits(const std::string& package) {
        StreamConfig config;
        Client(config, package);
        config.Add(PreviewStream());
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
    LoadConfig(kPackageConfig);
    EXPECT_EQ("000010", ClientBits("com.example.app"));
    EXPECT_EQ("100000", ClientBits("com.lumo.camera"));
    EXPECT_EQ("100000", ClientBits("com.lumo.camera.beta"));
    EXPECT_EQ("000100", ClientBits("com.lumo.engineer"));
    EXPECT_EQ("001010", ClientBits("com.lumo.scanner.qr"));
    EXPECT_EQ("000011", ClientBits("android.cts.verifier"));
    // Not a prefix of the configured string the other way round.
    EXPECT_EQ("000010", ClientBits("com.lumo"));
}

TEST_F(ClientPackagePolicyTest, UnconfiguredStringsStandForNA) {
    // No configuration at all: only packages beginning with "NA" match.
    EXPECT_EQ("000010", ClientBits("com.example.app"));
    EXPECT_EQ("101101", ClientBits("NAvigator"));
    EXPECT_EQ("000010", ClientBits("na.lower"));

    // A key with no value is not configured; an empty string matches everyone.
    LoadConfig("[PackageName Group]\nSystemCamera =\nEngineerMode = \"\"\n");
    EXPECT_EQ("000100", ClientBits("com.example.app"));
    EXPECT_EQ("101101", ClientBits("NAvigator"));
}

TEST_F(ClientPackagePolicyTest, EngineerAndSystemCameraTogether) {
    LoadConfig("[PackageName Group]\nSystemCamera = com.lumo\nEngineerMode = com.lumo.eng\n");
    EXPECT_EQ("100100", ClientBits("com.lumo.eng"));
}

TEST_F(ClientPackagePolicyTest, CameraUnitCountsAsSystemCamera) {
    StreamConfig config;
    Client(config, "com.example.app");
    config.SessionParams().VendorByte(kTagCameraUnit, 1);
    config.Add(PreviewStream());
    Configure(config);
    EXPECT_TRUE(LoggedExactly("I get is.sdk.camera.package successfully, m_isCameraUint 1"));
    EXPECT_TRUE(Has(CapsSystemCameraClient));
    EXPECT_TRUE(Has(CapsCameraUnitSdk));
    EXPECT_TRUE(Has(CapsSystemCamera));
    EXPECT_FALSE(Has(CapsThirdPartyClient));
    // A system camera client, but not the system camera app.
    EXPECT_FALSE(Has(CapsSystemCameraApp));
    EXPECT_EQ(std::vector<int>{1}, HostPlatform::TakeSwitchLogEnableCalls());

    StreamConfig plain;
    Client(plain, "com.example.app");
    plain.SessionParams().VendorByte(kTagCameraUnit, 0);
    plain.Add(PreviewStream());
    Configure(plain);
    EXPECT_FALSE(Has(CapsCameraUnitSdk));
    EXPECT_TRUE(Has(CapsThirdPartyClient));
    EXPECT_EQ(std::vector<int>{0}, HostPlatform::TakeSwitchLogEnableCalls());
}

TEST_F(ClientPackagePolicyTest, NameLengthLimitsAndMessages) {
    const std::string package80(80, 'p');
    const std::string activity80(80, 'a');
    StreamConfig config;
    Client(config, package80, activity80);
    Configure(config);
    EXPECT_STREQ(package80.c_str(), m_parser->GetPackageName());
    EXPECT_STREQ(activity80.c_str(), m_parser->GetActivityName());
    EXPECT_FALSE(LoggedContaining("E no find vendor tags com.tavro.activityName"));
    CameraLog();

    // 81 bytes: neither name is taken; only the activity complains.
    StreamConfig longer;
    Client(longer, std::string(81, 'q'), std::string(81, 'b'));
    Configure(longer);
    EXPECT_STREQ(package80.c_str(), m_parser->GetPackageName());
    EXPECT_STREQ(activity80.c_str(), m_parser->GetActivityName());
    std::vector<std::string> log = CameraLog();
    EXPECT_EQ(1, std::count(log.begin(), log.end(), "I find vendor tags com.tavro.packageName"));
    EXPECT_EQ(1,
              std::count(log.begin(), log.end(), "E no find vendor tags com.tavro.activityName"));
    EXPECT_EQ(0, std::count_if(log.begin(), log.end(), [](const std::string& line) {
                  return line.find("get packageName successfully") != std::string::npos;
              }));

    // Absent names: only the package complains.
    CameraLog();
    StreamConfig none;
    Configure(none);
    EXPECT_TRUE(LoggedExactly("E cannot find vendor tags com.tavro.packageName"));
    EXPECT_FALSE(LoggedContaining("activityName"));
}

TEST_F(ClientPackagePolicyTest, ShorterNameReplacesTheWholeEarlierName) {
    StreamConfig first;
    Client(first, "com.example.longer.name", "MainActivityWithLongName");
    Configure(first);
    StreamConfig second;
    Client(second, "com.ex", "Main");
    Configure(second);
    EXPECT_STREQ("com.ex", m_parser->GetPackageName());
    EXPECT_STREQ("Main", m_parser->GetActivityName());
    EXPECT_TRUE(LoggedExactly("I get packageName successfully, packageName is com.ex"));
    EXPECT_TRUE(LoggedExactly("I get activityName successfully, activityName is Main"));
}

TEST_F(ClientPackagePolicyTest, ExtendedModeStreams) {
    LoadConfig(kPackageConfig);
    for (const char* package : {"com.example.app", "com.lumo.camera", "com.lumo.engineer"}) {
        const bool thirdParty = strcmp(package, "com.example.app") == 0;
        StreamConfig config;
        Client(config, package);
        StreamSpec extended = PreviewStream();
        extended.extMode = 2;
        StreamSpec other = PreviewStream();
        other.extMode = 1;
        camera3_stream_t* a = config.Add(extended);
        camera3_stream_t* b = config.Add(other);
        camera3_stream_t* c = config.Add(extended);
        b->ext_stream_flags = 5;
        c->ext_stream_flags = 3;
        Configure(config);
        EXPECT_EQ(thirdParty ? 16u : 0u, a->ext_stream_flags) << package;
        EXPECT_EQ(5u, b->ext_stream_flags) << package;
        EXPECT_EQ(thirdParty ? 16u : 3u, c->ext_stream_flags) << package;
        EXPECT_TRUE(Has(CapsExtModeStream)) << package;
    }

    StreamConfig noExtended;
    StreamSpec other = PreviewStream();
    other.extMode = 1;
    noExtended.Add(other);
    Configure(noExtended);
    EXPECT_FALSE(Has(CapsExtModeStream));
}

TEST_F(ClientPackagePolicyTest, CameraLoggingFollowsTheClient) {
    LoadConfig(kPackageConfig);
    ClientBits("com.lumo.camera");
    ClientBits("com.example.app");
    ClientBits("com.lumo.engineer");
    EXPECT_EQ((std::vector<int>{1, 0, 0}), HostPlatform::TakeSwitchLogEnableCalls());
}

TEST_F(ClientPackagePolicyTest, OisListsMatchByPrefix) {
    LoadConfig(std::string(kPackageConfig) + "OisCloseOcsApp =\n");
    ClientBits("com.lumo.camera.ois.test");
    EXPECT_TRUE(LoggedExactly("I m_SupportOisCenterOn 1"));
    EXPECT_FALSE(LoggedContaining("m_SupportOisCloseOcs"));
    CameraLog();
    ClientBits("com.lumo.camera");
    EXPECT_FALSE(LoggedContaining("m_SupportOisCenterOn"));
}

TEST_F(ClientPackagePolicyTest, GenericSystemImageFromProperties) {
    auto gsiFlag = [this]() {
        CameraLog();
        ClientBits("com.example.app");
        const std::string line = "I get is.sdk.camera.package successfully, m_isGSIBuild ";
        return LoggedExactly(line + "1") ? 1 : LoggedExactly(line + "0") ? 0 : -1;
    };
    // Unset properties read as the platform's own brand and product.
    EXPECT_EQ(1, gsiFlag());

    property_set("ro.product.brand", "Lumo");
    property_set("ro.build.product", "lumo_phone");
    EXPECT_EQ(0, gsiFlag());
    // The client flags are computed either way.
    EXPECT_TRUE(Has(CapsThirdPartyClient));

    property_set("ro.product.system.brand", "Android_x");
    EXPECT_EQ(1, gsiFlag());

    property_set("ro.product.system.brand", "");
    property_set("ro.build.product", "generic_arm64");
    EXPECT_EQ(1, gsiFlag());
}

}  // namespace
}  // namespace LumoraTest
