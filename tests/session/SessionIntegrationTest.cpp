// What later configuration steps and the stream classification make of the
// client, the bokeh decision and the sensor name table.
#include <cutils/properties.h>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class SessionIntegrationTest : public SessionTest {};

TEST_F(SessionIntegrationTest, ClientKindReachesTheStreamCaps) {
    LoadConfig(
        "[PackageName Group]\nSystemCamera = com.lumo.camera\nOisCenterOnApp = com.lumo\n"
        "OisCloseOcsApp = com.other\n[OIS]\nOisCtsCloseOcs = 1\n");
    property_set("ro.product.brand", "Lumo");
    property_set("ro.build.product", "lumo");
    OpenMulti(3);

    StreamConfig system;
    SetClient(system, "com.lumo.camera");
    system.Add(PreviewStream());
    Configure(system);
    EXPECT_FALSE(Has(CapsThirdAppStream));
    EXPECT_FALSE(Has(CapsThirdAppTuning));
    for (uint32_t id = 0; id < 3; ++id) {
        EXPECT_TRUE(
            m_parser->IsSessionSupportCaps(CapsOisCenterOn, static_cast<QueryCapsType>(id)));
        EXPECT_FALSE(
            m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(id)));
    }

    StreamConfig app;
    SetClient(app, "com.other.app");
    app.Add(PreviewStream());
    Configure(app);
    EXPECT_TRUE(Has(CapsThirdAppStream));
    EXPECT_TRUE(Has(CapsThirdAppTuning));
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(CapsOisCenterOn, static_cast<QueryCapsType>(0)));
    EXPECT_TRUE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(1)));
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(0)));

    // The set's first camera is listed like any other.
    LoadConfig("[PackageName Group]\nOisCloseOcsApp = com.other\n[OIS]\nOisCtsCloseOcs = 0\n");
    Configure(app);
    EXPECT_TRUE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(0)));

    // A listed physical id that no camera of the session has is skipped; ids
    // after the fifth are not read.
    LoadConfig(
        "[PackageName Group]\nOisCloseOcsApp = com.other\n[OIS]\nOisCtsCloseOcs = 0, 2, 7, 8, 9, "
        "1\n");
    CameraSetup noZero;
    noZero.physicalCameras = {{0, 1, 1, true}, {0, 2, 2, false}};
    Open(noZero);
    Configure(app);
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(0)));
    EXPECT_TRUE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(2)));
    EXPECT_FALSE(m_parser->IsSessionSupportCaps(CapsOisCloseOcs, static_cast<QueryCapsType>(1)));
}

TEST_F(SessionIntegrationTest, BokehSessionIsNoZoomSession) {
    OpenMulti(3);
    StreamConfig config(0x8011);
    config.Add(PreviewStream(1920, 1080, "0"));
    config.Add(PreviewStream(1920, 1080, "1"));
    Configure(config);
    EXPECT_TRUE(Has(CapsBokehOrSingleCamera));

    StreamConfig zoom(0x8001);
    zoom.Add(PreviewStream());
    Configure(zoom);
    EXPECT_FALSE(Has(CapsBokehOrSingleCamera));
}

TEST_F(SessionIntegrationTest, LaterSensorNameRowWins) {
    LoadConfig(
        "[SensorNameList]\nmode[0] = 1, imx766\nmode[1] = 1, s5k3p9\n"
        "[OemSupportedCustomRAWFullSizes]\nSize[imx766] = 8000, 6000\n"
        "Size[s5k3p9] = 4000, 3000\n");
    OpenMulti(2);
    StreamConfig config;
    config.Add(PreviewStream());
    Configure(config);
    EXPECT_TRUE(LoggedExactly("I phycamid 1 RawSizes 4000:3000"));
    EXPECT_FALSE(LoggedContaining("RawSizes 8000:6000"));
}

}  // namespace
}  // namespace LumoraTest
