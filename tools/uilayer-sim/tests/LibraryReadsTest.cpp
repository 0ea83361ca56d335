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

// "<name>[<digits>]"; any name when `name` is empty.
bool IsRow(const std::string& key, const std::string& name) {
    const size_t open = key.rfind('[');
    if (open == std::string::npos || open == 0 || key.back() != ']' || open + 2 >= key.size() ||
        (!name.empty() && key.compare(0, open, name) != 0) ||
        (!name.empty() && open != name.size())) {
        return false;
    }
    return std::all_of(key.begin() + static_cast<long>(open) + 1, key.end() - 1,
                       [](char c) { return c >= '0' && c <= '9'; });
}

bool Knows(const KeyRule& rule, const ConfigRead& read) {
    if (read.group != rule.group) {
        return false;
    }
    const std::string& key = read.key;
    const bool named = rule.form == KeyForm::NamedRows || rule.form == KeyForm::NamedSingleRow;
    switch (read.kind) {
        case ConfigReadKind::Group:
            return true;
        case ConfigReadKind::IndexedKeys:
            return named || (rule.form == KeyForm::Rows && key == rule.key);
        case ConfigReadKind::Key:
            break;
    }
    switch (rule.form) {
        case KeyForm::Single:
            return key == rule.key;
        case KeyForm::Rows:
            return IsRow(key, rule.key);
        case KeyForm::NamedRows:
        case KeyForm::NamedSingleRow:
            return IsRow(key, "");
        case KeyForm::NamedByKey:
            return key.rfind(std::string(rule.key) + "[", 0) == 0 && key.back() == ']';
        case KeyForm::AnyKey:
            return true;
        case KeyForm::SensorModeKey:
            return key.back() == ']' && key.find("][") != std::string::npos;
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
