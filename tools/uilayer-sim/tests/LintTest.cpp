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

// The findings of every kind, with their lines and texts, are checked against
// lint/findings.txt by golden_test.py; groups and keys of other modules of the
// HAL (at the end of lint/counts.conf) are left alone.

}  // namespace
}  // namespace UilayerSim
