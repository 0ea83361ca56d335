#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>
#include <string>

#include "Replay.h"
#include "ScenarioReader.h"
#include "ScopedTempDir.h"

namespace UilayerSim {
namespace {

// The scenarios of scenarios/ replay to the reports committed beside them
// (golden_test.py); here the replay's own guarantees.
std::string ScenarioPath(const char* name) {
    const std::string here = __FILE__;
    return here.substr(0, here.rfind('/')) + "/scenarios/" + name;
}

ReplayOptions Options(bool log) {
    ReplayOptions options;
    options.log = log;
    options.siblingRoot = UILAYER_SIM_SIBLING_ROOT;
    return options;
}

TEST(ReplayTest, IsDeterministicAndCleansUpItsDeviceRoot) {
    ScopedTempDir tmp;
    const Scenario scenario = ReadScenarioFile(ScenarioPath("repeats.yaml"));
    const std::string first = RenderText(Replay(scenario, Options(true)));
    const std::string second = RenderText(Replay(scenario, Options(true)));
    EXPECT_EQ(first, second);
    EXPECT_EQ(std::string::npos, first.find("uilayer-sim."));
    EXPECT_EQ(std::vector<std::string>{}, tmp.Entries());
    EXPECT_EQ(nullptr, getenv("UILAYER_DEVICE_ROOT"));
}

TEST(ReplayTest, MasksAddressesButKeepsCapsAndUsageNumbers) {
    EXPECT_EQ("pStream <addr>, format 22, usage 0x40000000, caps 0x0044 -> 0x0004",
              MaskAddresses("pStream 0x55d0c8a1b2c0, format 22, usage 0x40000000, caps 0x0044 "
                            "-> 0x0004"));
    EXPECT_EQ("stream (nil)", MaskAddresses("stream (nil)"));
}

}  // namespace
}  // namespace UilayerSim
