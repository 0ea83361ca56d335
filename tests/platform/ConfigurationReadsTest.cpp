#include <gtest/gtest.h>

#include <CameraHWConfiguration.h>
#include <HostConfigReads.h>
#include <HostPlatform.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Reads() {
    std::vector<std::string> texts;
    for (const HostPlatform::ConfigRead& read : HostPlatform::TakeConfigurationReads()) {
        const char* kind = read.kind == HostPlatform::ConfigReadKind::Group ? "group "
                           : read.kind == HostPlatform::ConfigReadKind::Key ? "key "
                                                                            : "indexed ";
        texts.push_back(kind + read.group + "/" + read.key);
    }
    return texts;
}

TEST(ConfigurationReadsTest, RecordsEachDistinctReadOnlyWhileOn) {
    ASSERT_EQ(0, HostPlatform::LoadConfiguration("[G]\nA = 1\nM[0] = 2\n"));
    uint32_t value = 0;
    char* text = nullptr;
    GetUIntegerConfiguration("G", "A", &value);
    HostPlatform::SetConfigurationReadRecording(true);
    GetUIntegerConfiguration("G", "A", &value);
    GetUIntegerListConfiguration("G", "A", &value, 1);
    GetLocaleStringConfiguration("G", "M", "0", &text);
    GetLocaleKeyCount("G", "M");
    GetKeyCount("Missing");
    HasGroupConfiguration("G");
    HostPlatform::SetConfigurationReadRecording(false);
    GetUIntegerConfiguration("G", "Off", &value);
    EXPECT_EQ((std::vector<std::string>{"key G/A", "key G/M[0]", "indexed G/M", "group Missing/",
                                        "group G/"}),
              Reads());
    EXPECT_EQ(std::vector<std::string>{}, Reads());
    HostPlatform::LoadConfiguration("");
}

}  // namespace
