// Stream roles, sensor modes, pipelines and remosaic sizes that depend on the
// session parameters (operation mode, client names) and on the sensor name
// table of the configuration.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

const std::string kSystemCamera = "[PackageName Group]\nSystemCamera = com.sys\n";

class StreamsIntegrationTest : public SessionTest {
protected:
    // A configuration of one preview stream from the given client.
    void ConfigureFor(uint32_t operationMode, const std::string& package = "com.sys") {
        StreamConfig config(operationMode);
        config.Add(PreviewStream());
        SetClient(config, package);
        Configure(config);
    }
    int Query(_CapsBitset caps, uint32_t type, signed char& index) {
        CameraLog();
        return m_parser->GetSensorModeIndexByCaps(caps, QueryCapsType(type), index);
    }
    std::string QueryFailure(_CapsBitset caps, uint32_t type) {
        signed char index = 0;
        EXPECT_NE(0, Query(caps, type, index));
        for (const std::string& line : CameraLog()) {
            if (line.rfind("E GetSensorModeIndexByCaps Query ", 0) == 0) {
                return line.substr(2);
            }
        }
        return "";
    }
};

TEST_F(StreamsIntegrationTest, SeamlessKeysCarryNameReducedMaskAndMode) {
    OpenSingle("imx766");
    LoadConfig(kSystemCamera);
    ConfigureFor(0x8001);
    EXPECT_EQ(
        "GetSensorModeIndexByCaps Query imx766[0x0002][-1] fail, please config: "
        "imx766[0x0002][0x8001]",
        QueryFailure(_CapsBitset(), TypeLogicalCamera));
    struct Case {
        std::vector<size_t> bits;
        const char* mask;
    };
    const Case cases[] = {{{21}, "0x0020"},     {{17}, "0x0002"},         {{17, 19}, "0x0008"},
                          {{16, 25}, "0x0200"}, {{18, 21, 22}, "0x0020"}, {{33, 40}, "0x20000"}};
    for (const Case& c : cases) {
        _CapsBitset caps;
        for (size_t bit : c.bits) {
            caps.set(bit);
        }
        EXPECT_NE(std::string::npos,
                  QueryFailure(caps, 7).find(std::string("Query imx766[") + c.mask + "][-1]"))
            << c.mask;
    }
    signed char index = 0;
    Query(_CapsBitset().set(21), 7, index);
    EXPECT_TRUE(LoggedExactly("V supportCaps 0x200000 -> 0x0020"));
}

TEST_F(StreamsIntegrationTest, OnlyAMissingKeyFallsBackToEveryMode) {
    OpenSingle("imx766");
    LoadConfig(kSystemCamera +
               "[OemCamSeamlessSettingMap]\nimx766[0x0002][0x8001] = 4\n"
               "imx766[0x0002][-1] = 9\nimx766[0x0008][0x8001] = x\nimx766[0x0008][-1] = 3\n");
    ConfigureFor(0x8001);
    signed char index = 0;
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(4, index);
    ConfigureFor(0x8005);
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(9, index);

    ConfigureFor(0x8001);
    index = 1;
    EXPECT_EQ(22, Query(_CapsBitset().set(19), 7, index));
    EXPECT_EQ(1, index);
    EXPECT_TRUE(LoggedExactly(
        "E GetSensorModeIndexByCaps Query  fail, please config: imx766[0x0008][0x8001]"));
}

TEST_F(StreamsIntegrationTest, SensorNameComesFromTheQueriedCamerasLogicalId) {
    m_device.Add(SingleCamera("wide", 0, 0));
    m_device.Add(SingleCamera("tele", 1, 1));
    m_device.Add(MultiCamera(2, 2, 2));
    Start(2);
    LoadConfig(kSystemCamera);
    ConfigureFor(0x8001);
    EXPECT_NE(std::string::npos, QueryFailure(_CapsBitset(), 7).find("Query wide[0x0002][-1]"));
    EXPECT_NE(std::string::npos, QueryFailure(_CapsBitset(), 1).find("Query tele[0x0002][-1]"));
    // An unknown camera type looks up its own number as logical camera id.
    signed char index = 0;
    EXPECT_EQ(6, Query(_CapsBitset(), 5, index));
    EXPECT_TRUE(LoggedExactly("E Can't find primary camera id for TypeLogicalCamera"));
    EXPECT_TRUE(LoggedContaining("Query [0x0002][-1] fail"));

    // Of two primary cameras the first names the sensor.
    CameraSetup twoPrimaries = MultiCamera(2, 3, 3);
    twoPrimaries.physicalCameras[1].isPrimary = 1;
    m_device.Add(twoPrimaries);
    Start(3);
    ConfigureFor(0x8001);
    EXPECT_NE(std::string::npos, QueryFailure(_CapsBitset(), 7).find("Query wide[0x0002][-1]"));
}

TEST_F(StreamsIntegrationTest, KeysAreCutToSixtyThreeCharacters) {
    const std::string longName(70, 'n');
    OpenSingle(longName);
    LoadConfig(kSystemCamera);
    ConfigureFor(0x8001);
    const std::string cut = longName.substr(0, 63);
    EXPECT_EQ("GetSensorModeIndexByCaps Query " + cut + " fail, please config: " + cut,
              QueryFailure(_CapsBitset(), 7));
}

TEST_F(StreamsIntegrationTest, OtherClientsUseTheirOwnRows) {
    OpenSingle();
    LoadConfig(kSystemCamera +
               "[OtherCamSensorSettingMap]\ncom.app[0] = 3, -1, -1, -1, -1, 5\n"
               "com.app[1] = -1, 0, 1920, 1080, 0x8001, 6\ncom.app[2] = -1, -1, -1, -1, -1, 7\n"
               "Main[0] = -1, -1, -1, -1, -1, 2\nshort[0] = -1, -1, -1, -1, 8\n");
    ConfigureFor(0x8001, "com.app");
    signed char index = 0;
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(6, index);
    EXPECT_EQ(0, Query(_CapsBitset(), 3, index));
    EXPECT_EQ(5, index);
    ConfigureFor(0x8005, "com.app");
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(7, index);

    StreamConfig config(0x8001);
    config.Add(PreviewStream());
    SetClient(config, "com.other", "Main");
    Configure(config);
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(2, index);
    ConfigureFor(0x8001, "short");
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(-1, index);
    // The engineering camera's MIPI selection wins over every row.
    config.SessionParams().VendorString(kTagPackageName, "com.app");
    config.SessionParams().VendorByte(kTagMipiSelectMode, 2);
    Configure(config);
    EXPECT_EQ(0, Query(_CapsBitset(), 7, index));
    EXPECT_EQ(2, index);
}

TEST_F(StreamsIntegrationTest, SystemCameraRemapsListedSensors) {
    OpenSingle();
    LoadConfig(kSystemCamera +
               "[EquivalentFocalLengthMapping]\nneedOverrideCameraList = s1, imx766\n"
               "baseZoomRatio = 1.5, 2.5\n");
    ConfigureFor(0x8001);
    char name[] = "imx766";
    EXPECT_FLOAT_EQ(2.5f, m_parser->ProcessRemapZoomRatio(name, 0));
    EXPECT_TRUE(
        LoggedExactly("I sensorname is imx766, isNeedRemapZoomRatio is 1, basezoomratio is "
                      "2.500000"));
    EXPECT_FLOAT_EQ(1.0f, m_parser->ProcessRemapZoomRatio(name, 1));
    char other[] = "s2";
    EXPECT_FLOAT_EQ(1.0f, m_parser->ProcessRemapZoomRatio(other, 0));
}

TEST_F(StreamsIntegrationTest, OperationModeRules) {
    OpenSingle();
    // Small preview: view finder of the multi-camera modes only.
    EXPECT_EQ(EStreamTypeViewFinder, ClassifyAlone(PreviewStream(320, 240), 0x8001));
    EXPECT_TRUE(Has(CapsStreamViewFinder));
    EXPECT_EQ(EStreamTypeViewFinder, ClassifyAlone(PreviewStream(320, 240), 0x81B4));
    EXPECT_EQ(EStreamTypePreview, ClassifyAlone(PreviewStream(320, 240), 0x8012));
    EXPECT_EQ(EStreamTypePreview, ClassifyAlone(PreviewStream(320, 241), 0x8001));
    // YUV snapshots are raw-like in mode 0x8001.
    EXPECT_EQ(EStreamTypeSnapshotYUV, ClassifyAlone(YuvSnapshotStream(), 0x8001));
    EXPECT_TRUE(Has(CapsRawStream));
    EXPECT_EQ(EStreamTypeSnapshotYUV, ClassifyAlone(YuvSnapshotStream(), 0x8002));
    EXPECT_FALSE(Has(CapsRawStream));
    // Extended preview streams in the listed modes.
    StreamSetup extended = PreviewStream();
    extended.extMode = 2;
    ClassifyAlone(extended, 0x800B);
    EXPECT_TRUE(Has(CapsExtModePreview));
    ClassifyAlone(extended, 0x8001);
    EXPECT_FALSE(Has(CapsExtModePreview));
    extended.extMode = 1;
    ClassifyAlone(extended, 0x800B);
    EXPECT_FALSE(Has(CapsExtModePreview));
}

TEST_F(StreamsIntegrationTest, ConfiguredViewFinderAndSceneDetectionSizes) {
    OpenSingle();
    LoadConfig(
        "[ASDFeatureConfig]\nVideoASDOperationMode = 0x8105\nViewASDFullFovStreamInfo = 640, 480\n"
        "[PIPFeatureConfig]\nViewFinderOperationMode = 0x8006\nViewFinderStreamInfo = 1280, 720\n"
        "[OIS]\noperationMode = 0x8006\n"
        "[OemCommonCapbility]\nCaptureHdrSupportOpMode = 0x8006\n");
    StreamConfig asd(0x8005);
    camera3_stream_t* small = asd.Add(PreviewStream(640, 480));
    camera3_stream_t* beforeVideo = asd.Add(JpegStream(640, 480));
    asd.Add(VideoStream());
    camera3_stream_t* afterVideo = asd.Add(JpegStream(640, 480));
    Configure(asd);
    EXPECT_EQ(EStreamTypeViewFinder, m_parser->GetStreamTypeByStream(small));
    EXPECT_EQ(EStreamTypeSnapshotJPEG, m_parser->GetStreamTypeByStream(beforeVideo));
    EXPECT_EQ(EStreamTypeASDPreview, m_parser->GetStreamTypeByStream(afterVideo));
    EXPECT_TRUE(Has(CapsStreamASDPreview));
    EXPECT_EQ(EStreamTypePreview, ClassifyAlone(PreviewStream(), 0x8006));
    EXPECT_FALSE(Has(CapsCaptureHdrP010Preview));  // a preview other than P010

    LoadConfig(kSystemCamera +
               "[PIPFeatureConfig]\nViewFinderOperationMode = 0x8006\n"
               "ViewFinderStreamInfo = 1280, 720\n[OIS]\noperationMode = 0x8006\n"
               "[OemCommonCapbility]\nCaptureHdrSupportOpMode = 0x8006\n");
    StreamConfig pip(0x8006);
    camera3_stream_t* finder = pip.Add(PreviewStream(1280, 720));
    StreamSetup p010 = PreviewStream();
    p010.format = 0x36;
    camera3_stream_t* preview = pip.Add(p010);
    pip.SessionParams().VendorString(kTagPackageName, "com.sys");
    Configure(pip);
    EXPECT_EQ(EStreamTypeViewFinder, m_parser->GetStreamTypeByStream(finder));
    EXPECT_EQ(EStreamTypePreview, m_parser->GetStreamTypeByStream(preview));
    EXPECT_TRUE(Has(CapsCaptureHdrP010Preview));
    // The system camera wants preview OIS only in the OIS operation modes.
    EXPECT_TRUE(Has(CapsPreviewOis));
    EXPECT_FALSE(Has(CapsThirdAppStream));
    ConfigureFor(0x8005);
    EXPECT_FALSE(Has(CapsPreviewOis));

    // Sizes that are not configured match no stream, not even one of no size.
    LoadConfig(
        "[ASDFeatureConfig]\nVideoASDOperationMode = 0x8105\n"
        "[PIPFeatureConfig]\nViewFinderOperationMode = 0x8005\n");
    for (const StreamSetup& stream : {PreviewStream(1, 0), PreviewStream(0, 1)}) {
        EXPECT_EQ(EStreamTypePreview, ClassifyAlone(stream, 0x8005)) << stream.width;
    }
}

TEST_F(StreamsIntegrationTest, PipelineRowsTheLastMatchNamesThePipeline) {
    OpenSingle();
    LoadConfig(
        "[OemDecouplePipelines]\nisSupportLowLatency = true\n[OPreviewPipelines]\n"
        "mode[0] = 0x8001, 255, 1, \"LowLatencyA\"\nmode[1] = 0x8001, 0, 0, \"PlainB\"\n"
        "mode[2] = 0x8001, 1, 0, \"OtherCamera\"\nmode[3] = 0x8002, 0, 1, \"OtherMode\"\n");
    ConfigureFor(0x8001);
    EXPECT_STREQ("PlainB", m_parser->GetPipelineName());
    EXPECT_TRUE(Has(CapsLowLatencyPipeline));
    EXPECT_TRUE(LoggedExactly("I select pipeline name LowLatencyA"));
    ConfigureFor(0x8002);
    EXPECT_STREQ("OtherMode", m_parser->GetPipelineName());
    EXPECT_TRUE(Has(CapsLowLatencyPipeline));
    ConfigureFor(0x8003);
    EXPECT_STREQ("TavroSingleDefault", m_parser->GetPipelineName());
    EXPECT_FALSE(Has(CapsLowLatencyPipeline));

    // A row of a mode and a name serves every camera and is never low latency.
    LoadConfig(
        "[OemDecouplePipelines]\nisSupportLowLatency = true\n[OPreviewPipelines]\n"
        "mode[0] = 0x8001, \"Short\"\n");
    ConfigureFor(0x8001);
    EXPECT_STREQ("Short", m_parser->GetPipelineName());
    EXPECT_FALSE(Has(CapsLowLatencyPipeline));
    // A row shorter than the first has no name: the earlier row's stays.
    LoadConfig(
        "[OPreviewPipelines]\nmode[0] = 0x8001, 255, 0, \"Named\"\nmode[1] = 0x8001, 255, 0\n");
    ConfigureFor(0x8001);
    EXPECT_STREQ("Named", m_parser->GetPipelineName());
    // Without a matching row a set of two cameras takes the multi-camera default.
    OpenMulti(2);
    LoadConfig("");
    ConfigureFor(0x8001);
    EXPECT_STREQ("TavroMultiDefault", m_parser->GetPipelineName());
}

TEST_F(StreamsIntegrationTest, CustomFullRawSizeByPhysicalCamerasSensor) {
    const std::string fits(43, 'f');
    const std::string tooLong(46, 'l');
    CameraSetup setup = SingleCamera("qcfa50");
    setup.fullArrayWidth = 8000;
    setup.sensorModeFlags = {0x800};
    m_device.Add(setup);
    Start();
    LoadConfig("[SensorNameList]\nmode[0] = 0, qcfa50\nmode[1] = 1, " + fits + "\nmode[2] = 2, " +
               tooLong + "\n[OemSupportedCustomRAWFullSizes]\nSize[qcfa50] = 7000, 5000\nSize[" +
               fits + "] = 10, 20\nSize[" + tooLong + "] = 30, 40\n");
    EXPECT_EQ(EStreamTypeSnapshotRAWFull, ClassifyAlone(RawStream(0x20, 7000, 5000, "0")));
    EXPECT_TRUE(LoggedExactly("I phycamid 0 RawSizes 7000:5000"));
    EXPECT_TRUE(LoggedExactly("I phycamid 1 RawSizes 10:20"));
    EXPECT_FALSE(LoggedContaining("RawSizes 30:40"));
    EXPECT_TRUE(LoggedExactly("I pStream->width 7000 frameworkId 0 phyId 0 QCFA size 7000:5000"));
    EXPECT_TRUE(Has(CapsPhysicalRawStream, 0));
    EXPECT_EQ(EStreamTypeSnapshotRAW, ClassifyAlone(RawStream(0x20, 6999, 5000, "0")));
    LoadConfig(
        "[SensorNameList]\nmode[0] = 0, qcfa50\n[OemSupportedCustomRAWFullSizes]\n"
        "Size[qcfa50] = 6000, 4000\n");
    EXPECT_EQ(EStreamTypeSnapshotRAWFull, ClassifyAlone(RawStream(0x20, 6000, 4000, "0")));
}

}  // namespace
}  // namespace LumoraTest
