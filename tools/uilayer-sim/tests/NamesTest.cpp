#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "core/Names.h"

namespace UilayerSim {
namespace {

TEST(NamesTest, NamesEveryCapabilityBitBothWays) {
    EXPECT_EQ("CapsSensorModeFlag81/Caps4x4Izoom", CapabilityName(81));
    EXPECT_EQ("bit14", CapabilityName(14));
    for (const char* name : {"CapsSensorModeFlag81", "Caps4x4Izoom", "CapsStreamPreview"}) {
        uint32_t bit = 1000;
        EXPECT_TRUE(CapabilityByName(name, &bit)) << name;
        EXPECT_EQ(CapabilityName(bit).find(name) != std::string::npos, true) << name;
    }
    int64_t role = -1;
    EXPECT_TRUE(NumberByName(NameTable::StreamRoles, "EStreamTypeSnapshotRAWQcfa2x2", &role));
    EXPECT_EQ(9, role);
    EXPECT_EQ("SnapshotRAWQcfa2x2", StreamRoleName(9));
}

}  // namespace
}  // namespace UilayerSim
