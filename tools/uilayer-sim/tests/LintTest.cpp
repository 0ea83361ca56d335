#include <gtest/gtest.h>

#include <HostConfigText.h>

#include <string>
#include <utility>
#include <vector>

#include "lint/Lint.h"
#include "core/ScenarioReader.h"

namespace UilayerSim {
namespace {

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

TEST(LintTest, FloatsTheStoreTakesButNoRuleCanUse) {
    const Lumora::_ConfigKey& key = Lumora::Key(Lumora::EConfigKey::Xcfa2SwitchZoomRatio);
    const std::pair<const char*, const char*> cases[] = {
        {"nan", "not-a-float"}, {"-inf", "not-a-float"}, {"-1e400", "out-of-range"}, {"3e38", ""}};
    for (const auto& [value, rule] : cases) {
        const std::vector<LintFinding> findings = LintConfiguration(
            "[" + std::string(key.group) + "]\n" + key.key + " = " + value + "\n", "t.conf");
        EXPECT_EQ(rule, findings.empty() ? "" : findings[0].rule) << value;
    }
}

// Rows naming a sensor, camera or mask bit the phone does not have; the
// bundled configuration names only what it has.
TEST(LintTest, NamesAndCamerasTheDeviceDoesNotHave) {
    const Scenario phone =
        ReadDeviceOrScenarioFile(std::string(UILAYER_SIM_EXAMPLES_DIR) + "/devices/phone.yaml");
    std::string bundled;
    ASSERT_TRUE(ReadWholeFile(std::string(UILAYER_SIM_EXAMPLES_DIR) + "/device.conf", &bundled));
    EXPECT_TRUE(LintAgainstDevice(bundled, "device.conf", phone).empty());
    const std::pair<const char*, const char*> cases[] = {
        {"[EnableSensorDCGVS]\nlmt46 = 0x8009\n", "did you mean \"lmt64\"?"},
        {"[OemSupportedCustomRAWFullSizes]\nSize[lmw05] = 1, 2\n", "did you mean \"lmw50\"?"},
        {"[OemCamSeamlessSettingMap]\n2SatR[0x0002][-1] = 0\n", "\"2SatR\" is no sensor"},
        {"[EISTypeMatching]\nMode[0] = 0x8009, lmw50, lmx99\n", "value 3: \"lmx99\""},
        {"[SensorNameList]\nmode[0] = 9, lmw50\n", "physical camera 9 is not"},
        {"[WarmDolState]\nMode[0] = 0x8009, 7, 1, 1, 1, 1, 1, 1, 1, 1\n", "physical camera 7"},
        {"[SHDRTypeMatching]\nMode[0] = 8, 0x8009, 0x9, 1, 1, 60\n", "camera 8 is not"},
        {"[SHDRTypeMatching]\nMode[0] = 5, 0x8009, 0x21, 1, 1, 60\n", "has bit 5"},
        {"[OPreviewPipelines]\nmode[0] = 0x8005, 9, 1, \"P\"\n", "logical camera 9"},
        {"[OPreviewPipelines]\nmode[0] = 0x8005, 255, 1, \"P\"\n", ""},
        {"[3rdAppEnableVIULLMapLumora]\np[0] = 100, a\n", "mask 0x100 has bit 8"},
        {"[3rdAppDisableVIULLMap]\np[0] = 0x40\n", ""},
        {"[OIS]\nOisCtsCloseOcs = 0, 5\n", "value 2: physical camera 5"},
    };
    for (const auto& [text, reason] : cases) {
        const std::vector<LintFinding> findings = LintAgainstDevice(text, "t.conf", phone);
        const std::string found = findings.empty() ? "" : findings[0].reason;
        EXPECT_NE(std::string::npos, found.find(reason)) << text << found;
        EXPECT_EQ(*reason == '\0', findings.empty()) << text;
    }
}

// The findings of every kind, with their lines and texts, are checked against
// lint/findings.txt by golden_test.py; groups and keys of other modules of the
// HAL (at the end of lint/counts.conf) are left alone.

}  // namespace
}  // namespace UilayerSim
