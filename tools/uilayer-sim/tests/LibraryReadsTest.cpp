// Every group and key the library reads while the bundled scenarios replay
// must be known to the linter's table, or lint would call it unknown.
#include <gtest/gtest.h>

#include <HostConfigReads.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "lint/Lint.h"
#include "replay/Replay.h"
#include "core/ScenarioReader.h"

namespace UilayerSim {
namespace {

using HostPlatform::ConfigRead;
using HostPlatform::ConfigReadKind;

bool Knows(const KeyRule& rule, const ConfigRead& read) {
    switch (read.kind) {
        case ConfigReadKind::Group:
            return read.group == rule.group;
        case ConfigReadKind::IndexedKeys:
            return read.group == rule.group &&
                   (rule.form == KeyForm::NamedRows || rule.form == KeyForm::NamedSingleRow ||
                    (rule.form == KeyForm::Rows && read.key == rule.key));
        case ConfigReadKind::Key:
            return KeyRuleMatches(rule, read.group, read.key);
        case ConfigReadKind::Property:
        case ConfigReadKind::Metadata:
            break;
    }
    return false;
}

TEST(LibraryReadsTest, LintKnowsEveryKeyTheBundledScenariosRead) {
    size_t ruleCount = 0;
    const KeyRule* rules = KeyRules(&ruleCount);
    std::vector<std::string> scenarios;
    for (const auto& entry : std::filesystem::directory_iterator(UILAYER_SIM_EXAMPLES_DIR)) {
        if (entry.path().extension() == ".yaml") {
            scenarios.push_back(entry.path().string());
        }
    }
    std::sort(scenarios.begin(), scenarios.end());
    ASSERT_FALSE(scenarios.empty());

    ReplayOptions options;
    options.siblingRoot = UILAYER_SIM_SIBLING_ROOT;
    size_t reads = 0;
    std::vector<std::string> unknown;
    for (const std::string& path : scenarios) {
        const Scenario scenario = ReadScenarioFile(path);
        HostPlatform::TakeConfigurationReads();
        HostPlatform::SetConfigurationReadRecording(true);
        Replay(scenario, options);
        HostPlatform::SetConfigurationReadRecording(false);
        for (const ConfigRead& read : HostPlatform::TakeConfigurationReads()) {
            if (read.kind == ConfigReadKind::Property || read.kind == ConfigReadKind::Metadata) {
                continue;
            }
            ++reads;
            if (std::none_of(rules, rules + ruleCount,
                             [&](const KeyRule& rule) { return Knows(rule, read); })) {
                unknown.push_back(std::filesystem::path(path).filename().string() + ": [" +
                                  read.group + "] " + read.key);
            }
        }
    }
    EXPECT_GT(reads, 0u);
    EXPECT_EQ(std::vector<std::string>{}, unknown);
}

}  // namespace
}  // namespace UilayerSim
