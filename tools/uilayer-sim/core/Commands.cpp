// What the subcommands share: the sibling root, reading the scenario, writing out.
#include "core/Commands.h"

#include <cstdio>
#include <cstdlib>

#include "core/ScenarioReader.h"

namespace UilayerSim {

std::string SiblingRoot() {
    const char* root = getenv("UILAYER_SIM_SIBLING_ROOT");
    return root != nullptr && *root != '\0' ? root : UILAYER_SIM_SIBLING_ROOT;
}

bool LoadScenario(const std::string& path, Scenario* scenario) {
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        ReportUnreadable(path, reason);
        return false;
    }
    try {
        *scenario = ReadScenarioText(text, path);
    } catch (const ScenarioError& error) {
        fprintf(stderr, "%s\n", error.what());
        return false;
    }
    return true;
}

void WriteOut(const std::string& text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace UilayerSim
