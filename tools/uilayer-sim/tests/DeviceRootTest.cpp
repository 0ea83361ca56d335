#include <HostKit/DeviceRoot.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <climits>
#include <filesystem>
#include <memory>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/ScenarioReader.h"

namespace UilayerSim {
namespace {

using HostKit::DeviceRoot;

// A private TMPDIR for one test, so that counting what a test leaves behind
// is not disturbed by tests running in parallel.
class ScopedTempDir {
public:
    ScopedTempDir() {
        const char* old = getenv("TMPDIR");
        m_old = old != nullptr ? std::make_unique<std::string>(old) : nullptr;
        char pattern[] = "/tmp/uilayer-sim-test.XXXXXX";
        if (mkdtemp(pattern) != nullptr) {
            m_path = pattern;
            setenv("TMPDIR", m_path.c_str(), 1);
        }
    }
    ~ScopedTempDir() {
        m_old ? setenv("TMPDIR", m_old->c_str(), 1) : unsetenv("TMPDIR");
        std::filesystem::remove(m_path);
    }
    ScopedTempDir(const ScopedTempDir&) = delete;
    ScopedTempDir& operator=(const ScopedTempDir&) = delete;

    const std::string& Path() const { return m_path; }

    // Names in the directory.
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    std::string m_path;
    std::unique_ptr<std::string> m_old;
};

bool Exists(const std::string& path) {
    return std::filesystem::exists(std::filesystem::symlink_status(path));
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

        // A root reused by the next run keeps only the files that run writes alike.
        root.WriteFile("/data/vendor/camera/a.txt", "a");
        root.KeepOnly({{"/data/vendor/camera/aecWarmStartCamera_0.txt", "4 5 6\n"},
                       {"/sys/class/power_supply/wireless/online", "0"}});
        EXPECT_TRUE(Exists(path + "/data/vendor/camera/aecWarmStartCamera_0.txt"));
        EXPECT_FALSE(Exists(path + "/data/vendor/camera/a.txt"));
        EXPECT_FALSE(Exists(path + "/sys/class/power_supply/wireless/online"));
        root.WriteFile("/sys/class/power_supply/wireless/online", "0");
        ASSERT_TRUE(ReadWholeFile(path + "/sys/class/power_supply/wireless/online", &content));
        EXPECT_EQ("0", content);
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
