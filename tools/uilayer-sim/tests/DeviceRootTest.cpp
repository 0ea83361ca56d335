#include <HostKit/DeviceRoot.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/ScenarioReader.h"
#include "ScopedTempDir.h"

namespace UilayerSim {
namespace {

using HostKit::DeviceRoot;

bool Exists(const std::string& path) {
    struct stat info = {};
    return lstat(path.c_str(), &info) == 0;
}

class DeviceRootTest : public ::testing::Test {
protected:
    void SetUp() override { setenv("UILAYER_DEVICE_ROOT", "/previous/root", 1); }
    void TearDown() override { unsetenv("UILAYER_DEVICE_ROOT"); }
};

TEST_F(DeviceRootTest, HoldsTheSiblingAndTheFilesAndLeavesNothingBehind) {
    std::string path;
    {
        DeviceRoot root(UILAYER_SIM_SIBLING_ROOT);
        path = root.Path();
        const std::string sibling = path + "/odm/lib64/hw/camera.lumora.v2.so";
        char target[PATH_MAX] = {};
        ASSERT_GT(readlink(sibling.c_str(), target, sizeof(target) - 1), 0);
        EXPECT_EQ(std::string(UILAYER_SIM_SIBLING_ROOT) + "/odm/lib64/hw/camera.lumora.v2.so",
                  target);

        root.WriteFile("/data/vendor/camera/aecWarmStartCamera_0.txt", "1 2 3\n");
        root.WriteFile("/data/vendor/camera/aecWarmStartCamera_0.txt", "4 5 6\n");
        root.WriteFile("/sys/class/power_supply/wireless/online", "1");
        std::string content;
        ASSERT_TRUE(ReadWholeFile(path + "/data/vendor/camera/aecWarmStartCamera_0.txt", &content));
        EXPECT_EQ("4 5 6\n", content);

        root.Activate();
        EXPECT_EQ(path, getenv("UILAYER_DEVICE_ROOT"));
    }
    EXPECT_FALSE(Exists(path));
    EXPECT_STREQ("/previous/root", getenv("UILAYER_DEVICE_ROOT"));
}

TEST_F(DeviceRootTest, RefusesARootWithoutTheSiblingAndLeavesNothingBehind) {
    ScopedTempDir tmp;
    ASSERT_FALSE(tmp.Path().empty());
    EXPECT_THROW(DeviceRoot root("/no/such/root"), std::runtime_error);
    EXPECT_EQ(std::vector<std::string>{}, tmp.Entries());
    {
        DeviceRoot root(UILAYER_SIM_SIBLING_ROOT, "uilayer-sim");
        EXPECT_EQ(0u, root.Path().rfind(tmp.Path() + "/uilayer-sim.", 0)) << root.Path();
    }
    EXPECT_EQ(std::vector<std::string>{}, tmp.Entries());
}

}  // namespace
}  // namespace UilayerSim
