#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Names.h"
#include "NumberText.h"
#include "Suggest.h"

namespace UilayerSim {
namespace {

TEST(SuggestTest, FindsTheClosestNameWhenItIsNearEnough) {
    const std::vector<std::string> options = {"--json", "--log", "--help"};
    const struct {
        const char* name;
        NameTable table;
        const char* expected;
    } cases[] = {
        {"CapsVideoEis", NameTable::Capabilities, "CapsVideoEIS"},  // case only
        {"Caps4x4Izom", NameTable::Capabilities, "Caps4x4Izoom"},   // second name of bit 81
        {"BLBO", NameTable::PixelFormats, "BLOB"},                  // swapped neighbours
        {"HAL_PIXEL_FORMAT_RAW61", NameTable::PixelFormats, "HAL_PIXEL_FORMAT_RAW16"},
        {"Preveiw", NameTable::StreamRoles, "Preview"},
        {"ANDROID_CONTROL_ZOOM_RATIOS", NameTable::StandardTags, "ANDROID_CONTROL_ZOOM_RATIO"},
        {"CapsVideoEIS", NameTable::Capabilities, ""},  // known: nothing to suggest
        {"CapsTotallyNew", NameTable::Capabilities, ""},
        {"RAW", NameTable::PixelFormats, ""},  // short: one edit allowed, every format is further
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.expected, ClosestName(entry.name, AcceptedNames(entry.table)))
            << entry.name;
    }
    EXPECT_EQ("--json", ClosestName("--jsn", options));
    EXPECT_EQ("", ClosestName("--xyz", options));
    EXPECT_EQ(" (did you mean \"--log\"?)", DidYouMean("--lgo", options));
    EXPECT_EQ("", DidYouMean("--verbose", options));
}

TEST(SuggestTest, CountsEditsAndStopsAtAQuarterOfTheName) {
    EXPECT_EQ(3u, EditDistance("", "abc"));
    EXPECT_EQ(3u, EditDistance("kitten", "sitting"));
    EXPECT_EQ(2u, EditDistance("ab", "ba"));  // the lint counts a swap as two
    const std::vector<std::string> known = {"ABCDEFGH", "CapsSHDR"};
    EXPECT_EQ("ABCDEFGH", ClosestName("ABCDEFXY", known));  // 2 edits of 8 letters
    EXPECT_EQ("", ClosestName("ABCDEXYZ", known));          // 3
    EXPECT_EQ("CapsSHDR", ClosestName("CapsSHDRRR", known));
    EXPECT_EQ("CapsSHDR", ClosestName("aCpsSHDR", known));  // a swap is one edit
}

TEST(SuggestTest, TellsIntegerTextApartFromItsRange) {
    const std::pair<const char*, bool> cases[] = {
        {"12", true},   {"-0x1F", true}, {"+7", true},  {"99999999999999999999", true},
        {"0x", false},  {"-", false},    {"", false},   {"1a", false},
        {"0xG", false}, {"1.5", false},  {"x1", false}, {"0X0a", true},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.second, IsIntegerSyntax(entry.first)) << entry.first;
    }
}

TEST(SuggestTest, ListsEveryNameOfATableWithItsValue) {
    const std::vector<NamedNumber> caps = ListNames(NameTable::Capabilities);
    size_t bit81 = 0;
    for (const NamedNumber& entry : caps) {
        bit81 += entry.value == 81 ? 1 : 0;
        uint32_t bit = 0;
        ASSERT_TRUE(CapabilityByName(entry.name, &bit)) << entry.name;
        EXPECT_EQ(entry.value, bit) << entry.name;
    }
    EXPECT_EQ(2u, bit81);
    for (const NamedNumber& entry : ListNames(NameTable::PixelFormats)) {
        int64_t value = 0;
        ASSERT_TRUE(PixelFormatByName(entry.name, &value)) << entry.name;
        EXPECT_EQ(entry.value, value);
        EXPECT_EQ(std::string::npos, entry.name.find("HAL_PIXEL_FORMAT_"));
    }
    for (const NamedNumber& entry : ListNames(NameTable::StreamRoles)) {
        int32_t role = -1;
        ASSERT_TRUE(StreamRoleByName(entry.name, &role));
        EXPECT_EQ(entry.value, role);
    }
}

}  // namespace
}  // namespace UilayerSim
