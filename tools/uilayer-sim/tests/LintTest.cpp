#include <gtest/gtest.h>

#include <HostConfigText.h>

#include <string>
#include <vector>

#include "Lint.h"
#include "LintTable.h"
#include "ScenarioReader.h"

namespace UilayerSim {
namespace {

std::vector<std::string> Findings(const std::string& text) {
    std::vector<std::string> lines;
    for (const LintFinding& finding : LintConfiguration(text, "t.conf")) {
        lines.push_back(FormatFinding(finding));
    }
    return lines;
}

TEST(LintTest, BundledExampleIsClean) {
    std::string text;
    ASSERT_TRUE(ReadWholeFile(std::string(UILAYER_SIM_EXAMPLES_DIR) + "/device.conf", &text));
    EXPECT_EQ(std::vector<std::string>{}, Findings(text));
}

TEST(LintTest, BundledExampleHoldsEveryGroupAndKeyTheLibraryReads) {
    std::string text;
    ASSERT_TRUE(ReadWholeFile(std::string(UILAYER_SIM_EXAMPLES_DIR) + "/device.conf", &text));
    const HostPlatform::ConfigText config = HostPlatform::ReadConfigText(text);
    size_t count = 0;
    const KeyRule* rules = KeyRules(&count);
    for (size_t i = 0; i < count; ++i) {
        const KeyRule& rule = rules[i];
        const HostPlatform::ConfigGroup* group = config.Find(rule.group);
        ASSERT_NE(nullptr, group) << rule.group;
        if (rule.form == KeyForm::Single) {
            EXPECT_NE(nullptr, group->Find(rule.key)) << rule.group << " " << rule.key;
        } else if (rule.form == KeyForm::Rows) {
            EXPECT_NE(nullptr, group->Find(std::string(rule.key) + "[0]")) << rule.group;
        } else {
            EXPECT_FALSE(group->keys.empty()) << rule.group;
        }
    }
}

TEST(LintTest, GroupsAndKeysTheLibraryDoesNotKnowAreLeftAlone) {
    // Other modules of the HAL read groups and keys of their own.
    EXPECT_EQ(std::vector<std::string>{}, Findings("[JpegEncoderSettings]\n"
                                                   "quality = 95\n"
                                                   "[OemCommonCapbility]\n"
                                                   "SupportHeicSnapshot = true\n"));
}

TEST(LintTest, ReportsRowsOfTheWrongLength) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:2: [SHDRTypeMatching] Mode[0]: 5 values, rows of 6 expected",
                  "t.conf:4: [WarmDolState] Mode[0]: 11 values, rows of 10 expected",
                  "t.conf:6: [AIAFTouch2track] Mode[0]: 3 values, rows of 2 expected",
                  "t.conf:8: [SensorNameList] mode[0]: 1 value, rows of 2 expected",
                  "t.conf:10: [OtherCamSensorSettingMap] com.a[0]: 5 values, rows of 6 expected",
                  "t.conf:12: [ThirdAppOperationModeOverride] scene[0]: 3 values, rows of 4 "
                  "expected",
                  "t.conf:14: [3rdAppEnableVIULL] isEnable3rdAppVIULL[0]: 1 value, rows of 2 "
                  "expected",
                  "t.conf:16: [3rdAppEnableVIULLMapLumora] com.a[0]: 3 values, rows of 2 "
                  "expected",
                  "t.conf:18: [OEMFeature2ModeMatch] Mode[0]: 8 values, at most 7 are read",
              }),
              Findings("[SHDRTypeMatching]\n"
                       "Mode[0] = 5, 0x8009, 0x9, 1, 1\n"
                       "[WarmDolState]\n"
                       "Mode[0] = 0x8009, 0, 1, 50, 400, 800, 100, 5, 7, 60, 1\n"
                       "[AIAFTouch2track]\n"
                       "Mode[0] = 0x8005, 0x1, 0\n"
                       "[SensorNameList]\n"
                       "mode[0] = 0\n"
                       "[OtherCamSensorSettingMap]\n"
                       "com.a[0] = 7, 30, 1920, 1080, 0x8002\n"
                       "[ThirdAppOperationModeOverride]\n"
                       "scene[0] = com.a, -1, 8001\n"
                       "[3rdAppEnableVIULL]\n"
                       "isEnable3rdAppVIULL[0] = 1\n"
                       "[3rdAppEnableVIULLMapLumora]\n"
                       "com.a[0] = 1, com.a.Main, x\n"
                       "[OEMFeature2ModeMatch]\n"
                       "Mode[0] = 1, 2, 3, 4, 5, 6, 7, 8\n"));
}

TEST(LintTest, ReportsRowsThatDifferFromRowZero) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:4: [SHDRTypeMatching] Mode[1]: 5 values, row 0 has 6 (the library "
                  "reads every row with the count of row 0)",
                  "t.conf:7: [OPreviewPipelines] mode[1]: 3 values, row 0 has 4 (the library "
                  "reads every row with the count of row 0)",
              }),
              Findings("[SHDRTypeMatching]\n"
                       "Mode[0] = 5, 0x8009, 0x9, 1, 1, 60\n"
                       "; a row that lost its fps\n"
                       "Mode[1] = 5, 0x8009, 0x9, 0, 2\n"
                       "[OPreviewPipelines]\n"
                       "mode[0] = 0x8005, 255, 1, \"PreviewLowLatency\"\n"
                       "mode[1] = 0x8001, 5, \"SatPhotoPreview\"\n"
                       "[EISTypeMatching]\n"
                       "Mode[0] = 0x8009, 4SatR\n"
                       "Mode[1] = 0x8005, lmw50, lmf32\n"));
}

TEST(LintTest, ReportsRowsTheLibraryNeverReaches) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:3: [WarmDolState] Mode[2]: never read: with 2 keys the rows read are "
                  "Mode[0]..Mode[1]",
                  "t.conf:4: [AIAFTouch2track]: Mode[0] is missing: the library reads no row of "
                  "this group",
                  "t.conf:5: [AIAFTouch2track] Mode[1]: never read: with 1 keys the rows read "
                  "are Mode[0]..Mode[0]",
                  "t.conf:8: [VideoFrameInsertSupport] Comment: not a row the library reads, but "
                  "it counts as one: the rows read are Mode[0]..Mode[1]",
                  "t.conf:11: [OtherCamSensorSettingMap] com.a[2]: never read: the rows of "
                  "\"com.a\" are read as com.a[0]..com.a[1]",
                  "t.conf:13: [3rdAppDisableVIULLMap] com.b[0]: 2 entries for \"com.b\": the "
                  "library reads a name only when it has exactly one entry",
                  "t.conf:14: [3rdAppDisableVIULLMap] com.b[1]: 2 entries for \"com.b\": the "
                  "library reads a name only when it has exactly one entry",
              }),
              Findings("[WarmDolState]\n"
                       "Mode[0] = 0x8009, 0, 1, 50, 400, 800, 100, 5, 7, 60\n"
                       "Mode[2] = 0x8009, 3, 1, 50, 400, 800, 100, 2, 3, -1\n"
                       "[AIAFTouch2track]\n"
                       "Mode[1] = 0x8005, 0x1\n"
                       "[VideoFrameInsertSupport]\n"
                       "Mode[0] = 0x8009, 3840\n"
                       "Comment = see the video team\n"
                       "[OtherCamSensorSettingMap]\n"
                       "com.a[0] = 7, 30, 1920, 1080, 0x8002, 2\n"
                       "com.a[2] = 7, 60, 1920, 1080, 0x8002, 3\n"
                       "[3rdAppDisableVIULLMap]\n"
                       "com.b[0] = 0x1\n"
                       "com.b[1] = 0x2\n"));
}

TEST(LintTest, ReportsValuesThatDoNotConvert) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:2: [OemDecouplePipelines] isSupportLowLatency: value 1 \"yes\" is not "
                  "a boolean (true, false, 1 or 0)",
                  "t.conf:4: [SHDRTypeMatching] Mode[0]: value 6 \"any\" is not an integer",
                  "t.conf:6: [ThirdAppOperationModeOverride] scene[0]: value 4 \"80g2\" is not "
                  "a hexadecimal number",
                  "t.conf:8: [OemRemosaicConfig] XCFA2SwitchZoomRatio: value 2 \"2,5\" is not a "
                  "float",
                  "t.conf:10: [StarMode] expTime: value 1 \"4e9\" is not a 64-bit integer",
                  "t.conf:12: [WarmDolState] Mode[0]: value 3 \"4294967296\" is out of range "
                  "for a 32-bit integer",
              }),
              Findings("[OemDecouplePipelines]\n"
                       "isSupportLowLatency = yes\n"
                       "[SHDRTypeMatching]\n"
                       "Mode[0] = 5, 0x8009, 0x9, 1, 1, any\n"
                       "[ThirdAppOperationModeOverride]\n"
                       "scene[0] = com.a, -1, 0x8001, 80g2\n"
                       "[OemRemosaicConfig]\n"
                       "XCFA2SwitchZoomRatio = 2.0, \"2,5\"\n"
                       "[StarMode]\n"
                       "expTime = 4e9\n"
                       "[WarmDolState]\n"
                       "Mode[0] = 0x8009, 0, 4294967296, 50, 400, 800, 100, 5, 7, -1\n"));
}

TEST(LintTest, ReportsNamesOneOrTwoEditsFromWhatTheLibraryReads) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:1: [OemCommonCapability]: not a group the library reads; did you mean "
                  "[OemCommonCapbility]?",
                  "t.conf:4: [PackageName Group] SystemCamara: not read by the library; did you "
                  "mean \"SystemCamera\"?",
                  "t.conf:6: [StarMode] sensitivity: not read by the library; did you mean "
                  "\"sensitiviy\"?",
                  "t.conf:8: [VideoMLFTNode] operationMode: not read by the library; did you mean "
                  "\"opertionMode\"?",
                  "t.conf:9: [SHDRTypeMatching]: Mode[0] is missing: the library reads no row of "
                  "this group",
                  "t.conf:10: [SHDRTypeMatching] mode[0]: not read by the library; did you mean "
                  "\"Mode[0]\"?",
                  "t.conf:11: [ois]: not a group the library reads; did you mean [OIS]?",
              }),
              Findings("[OemCommonCapability]\n"
                       "Enable3DLut = true\n"
                       "[PackageName Group]\n"
                       "SystemCamara = com.lumora.camera\n"
                       "[StarMode]\n"
                       "sensitivity = 100\n"
                       "[VideoMLFTNode]\n"
                       "operationMode = 0x8009\n"
                       "[SHDRTypeMatching]\n"
                       "mode[0] = 5, 0x8009, 0x9, 1, 1, 60\n"
                       "[ois]\n"
                       "operationMode = 0x8005\n"));
    // A name that is also spelled correctly in the same file is not a typo
    // of it: both keys are there on purpose.
    EXPECT_EQ(std::vector<std::string>{}, Findings("[StarMode]\n"
                                                   "sensitiviy = 100\n"
                                                   "sensitivity = 100\n"));
}

TEST(LintTest, ReportsSensorModeKeysTheLibraryNeverForms) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:2: [OemCamSeamlessSettingMap] lmw50[0x2][-1]: mask \"0x2\" is not "
                  "written as the library writes it (\"0x%04lX\"): 0x0002",
                  "t.conf:3: [OemCamSeamlessSettingMap] lmw50[0x004a][0x8005]: mask \"0x004a\" "
                  "is not written as the library writes it (\"0x%04lX\"): 0x004A",
                  "t.conf:4: [OemCamSeamlessSettingMap] lmw50[0x0004][8005]: operation mode "
                  "\"8005\" is not written as the library writes it (\"0x%04X\" or -1): 0x1F45",
                  "t.conf:5: [OemCamSeamlessSettingMap] lmw50[0x0006][-1]: mask 0x0006 is never "
                  "a reduced caps mask (bits 0..17, not empty, bit 1 only alone)",
                  "t.conf:6: [OemCamSeamlessSettingMap] lmw50[0x40000][-1]: mask 0x40000 is "
                  "never a reduced caps mask (bits 0..17, not empty, bit 1 only alone)",
                  "t.conf:7: [OemCamSeamlessSettingMap] lmw50[0x0004][0x81B4]: operation mode "
                  "0x81B4 has bits 8..11 set: the library clears them before forming the key",
                  "t.conf:8: [OemCamSeamlessSettingMap] lmw50[0x0004]: not of the form "
                  "<sensor>[0x<mask>][0x<operation mode>] or <sensor>[0x<mask>][-1]: the library "
                  "never forms this key",
                  "t.conf:9: [OemCamSeamlessSettingMap] lmw50[0x0004][0x8005]: sensor mode index "
                  "300 does not fit in 8 bits",
                  "t.conf:10: [OemCamSeamlessSettingMap] lmw50[0x0008][-1]: 2 values, 1 expected",
              }),
              Findings("[OemCamSeamlessSettingMap]\n"
                       "lmw50[0x2][-1] = 0\n"
                       "lmw50[0x004a][0x8005] = 0\n"
                       "lmw50[0x0004][8005] = 0\n"
                       "lmw50[0x0006][-1] = 0\n"
                       "lmw50[0x40000][-1] = 0\n"
                       "lmw50[0x0004][0x81B4] = 0\n"
                       "lmw50[0x0004] = 0\n"
                       "lmw50[0x0004][0x8005] = 300\n"
                       "lmw50[0x0008][-1] = 1, 2\n"
                       "lmw50[0x0002][0x80B4] = -1\n"
                       "lmw50[0x3FFFD][-1] = 255\n"));
}

TEST(LintTest, ReportsCountsOfSingleKeysAndSensorNamedKeys) {
    const std::string longName(46, 'n');
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:2: [OIS] OisCtsCloseOcs: 6 values, at most 5 are read",
                  "t.conf:4: [PackageName Group] SystemCamera: 2 values, 1 expected",
                  "t.conf:6: [ASDFeatureConfig] ViewASDFullFovStreamInfo: 3 values, 2 expected",
                  "t.conf:9: [EquivalentFocalLengthMapping] baseZoomRatio: 1 value, "
                  "needOverrideCameraList has 2 (one ratio per sensor expected)",
                  "t.conf:11: [OemSupportedCustomRAWFullSizes] Size[lmw50]: 1 value, at least 2 "
                  "expected",
                  "t.conf:12: [OemSupportedCustomRAWFullSizes] Size[" + longName +
                      "]: sensor name of 46 characters: the library skips names longer than 45",
                  "t.conf:13: [OemSupportedCustomRAWFullSizes] Sizes[lmt64]: not read by the "
                  "library; did you mean \"Size[lmt64]\"?",
                  "t.conf:15: [EnableSensorDCGVS] lmw50: 0 values, at least 1 expected",
              }),
              Findings("[OIS]\n"
                       "OisCtsCloseOcs = 0, 1, 2, 3, 4, 5\n"
                       "[PackageName Group]\n"
                       "SystemCamera = com.lumora.camera, com.lumora.gallery\n"
                       "[ASDFeatureConfig]\n"
                       "ViewASDFullFovStreamInfo = 640, 480, 30\n"
                       "[EquivalentFocalLengthMapping]\n"
                       "needOverrideCameraList = lmt64, lmu13\n"
                       "baseZoomRatio = 3.0\n"
                       "[OemSupportedCustomRAWFullSizes]\n"
                       "Size[lmw50] = 8192\n"
                       "Size[" +
                       longName +
                       "] = 8192, 6144\n"
                       "Sizes[lmt64] = 9248, 6944\n"
                       "[EnableSensorDCGVS]\n"
                       "lmw50 =\n"));
}

TEST(LintTest, ReportsLinesTheStoreRefusesAndKeysThatReplaceEarlierOnes) {
    EXPECT_EQ((std::vector<std::string>{
                  "t.conf:1: text outside a group: the configuration store refuses the whole "
                  "file",
                  "t.conf:3: [SHDRTypeMatching]: a line with no '=': the configuration store "
                  "refuses the whole file",
                  "t.conf:5: [SHDRTypeMatching] Mode[0]: repeats the key of line 4, whose values "
                  "are dropped",
                  "t.conf:6: a group line must end with ']': the configuration store refuses "
                  "the whole file",
              }),
              Findings("orphan = 1\n"
                       "[SHDRTypeMatching]\n"
                       "Mode[1] 5, 0x8009, 0x9, 1, 1, 60\n"
                       "Mode[0] = 5, 0x8009, 0x9, 1, 1, 60\n"
                       "Mode[0] = 5, 0x8009, 0x9, 0, 2, 30\n"
                       "[StarMode # star\n"));
}

}  // namespace
}  // namespace UilayerSim
