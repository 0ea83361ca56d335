#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ConfigText.h"
#include "Names.h"

namespace UilayerSim {
namespace {

TEST(ConfigTextTest, ReadsValuesAsTheConfigurationStoreDoes) {
    const ConfigText config = ParseConfigText(
        "\xEF\xBB\xBF# comment\r\n"
        "  ; another\r\n"
        "[OPreviewPipelines]\r\n"
        "mode[0] = 0x8005 , 255,1, \"Preview, low latency\"\r\n"
        "[ PackageName Group ]\n"
        "OisCenterOnApp =\n"
        "SystemCamera = com.lumora.camera\n"
        "[OPreviewPipelines]\n"
        "mode[1] = 0x8001, 5, 0, \"SatPhotoPreview\"\n");
    EXPECT_TRUE(config.malformed.empty());
    ASSERT_EQ(2u, config.groups.size());
    const ConfigGroup* pipelines = config.Find("OPreviewPipelines");
    ASSERT_NE(nullptr, pipelines);
    EXPECT_EQ(3, pipelines->line);
    // A repeated group header continues the group.
    ASSERT_EQ(2u, pipelines->keys.size());
    EXPECT_EQ((std::vector<std::string>{"0x8005", "255", "1", "Preview, low latency"}),
              pipelines->keys[0].values);
    EXPECT_EQ(4, pipelines->keys[0].line);
    EXPECT_EQ(9, pipelines->keys[1].line);
    const ConfigGroup* packages = config.Find("PackageName Group");
    ASSERT_NE(nullptr, packages);
    ASSERT_NE(nullptr, packages->Find("OisCenterOnApp"));
    EXPECT_TRUE(packages->Find("OisCenterOnApp")->values.empty());
}

TEST(ConfigTextTest, KeepsAReplacedKeyInItsPlace) {
    const ConfigText config = ParseConfigText(
        "[SHDRTypeMatching]\n"
        "Mode[0] = 1\n"
        "Mode[1] = 2\n"
        "Mode[0] = 3\n");
    const ConfigGroup& group = config.groups.at(0);
    ASSERT_EQ(2u, group.keys.size());
    EXPECT_EQ("Mode[0]", group.keys[0].name);
    EXPECT_EQ(std::vector<std::string>{"3"}, group.keys[0].values);
    EXPECT_EQ(4, group.keys[0].line);
    ASSERT_EQ(1u, config.duplicates.size());
    EXPECT_EQ(4, config.duplicates[0].line);
}

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
    int32_t role = -1;
    EXPECT_TRUE(StreamRoleByName("EStreamTypeSnapshotRAWQcfa2x2", &role));
    EXPECT_EQ(9, role);
    EXPECT_EQ("SnapshotRAWQcfa2x2", StreamRoleName(9));
}

}  // namespace
}  // namespace UilayerSim
