#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "core/Names.h"

namespace UilayerSim {
namespace {

TEST(NamesTest, NamesEveryCapabilityBitBothWays) {
    EXPECT_EQ("CapsSensorModeFlag81/Caps4x4Izoom", CapabilityName(81));
    EXPECT_EQ("bit14", CapabilityName(14));
    for (uint32_t bit = 0; bit < 100; ++bit) {
        const std::string name = CapabilityName(bit);
        if (name.rfind("bit", 0) == 0) {
            continue;
        }
        // Every name reads back as its bit, both names of a shared bit too.
        size_t start = 0;
        while (start <= name.size()) {
            const size_t slash = name.find('/', start);
            const std::string one =
                name.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
            uint32_t read = 1000;
            EXPECT_TRUE(CapabilityByName(one, &read)) << one;
            EXPECT_EQ(bit, read) << one;
            if (slash == std::string::npos) {
                break;
            }
            start = slash + 1;
        }
    }
    int64_t role = -1;
    EXPECT_TRUE(NumberByName(NameTable::StreamRoles, "EStreamTypeSnapshotRAWQcfa2x2", &role));
    EXPECT_EQ(9, role);
    EXPECT_EQ("SnapshotRAWQcfa2x2", StreamRoleName(9));
}

}  // namespace
}  // namespace UilayerSim
