#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Names.h"
#include "core/Suggest.h"

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

}  // namespace
}  // namespace UilayerSim
