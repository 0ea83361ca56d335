// Host configuration store: the parsing and the typed reads with the status
// codes the library acts on.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include <CameraHWConfiguration.h>
#include <HostPlatform.h>

namespace {

constexpr int kOk = 0;
constexpr int kNotConfigured = 6;
constexpr int kInvalid = 22;

class ConfigurationStoreTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(0, HostPlatform::LoadConfiguration("")); }
    void TearDown() override { HostPlatform::LoadConfiguration(""); }

    static void Load(const char* text) { ASSERT_EQ(0, HostPlatform::LoadConfiguration(text)); }
};

TEST_F(ConfigurationStoreTest, ScalarReadsConvertWholeValuesOrLeaveTheOutputAlone) {
    Load(
        "[N]\nDec = -42\nHex = 0x8001\nUpper = 0XfF\nNegHex = -0x10\nPlus = +7\nAll = 0xFFFFFFFF\n"
        "Min = -2147483648\nLeading = 010\nTooBig = 4294967296\nTooSmall = -2147483649\n"
        "Junk = 12abc\nSign = -\nPrefix = 0x\nSpaced = \" 5\"\nFloat = 1.5\nEmpty =\n"
        "T = TRUE\nF = False\nOne = 1\nYes = yes\nTwo = 2\n"
        "I64 = -9223372036854775808\nI64Over = 0x10000000000000000\n");
    struct Case {
        const char* key;
        int status;
        int64_t value;  // the output after the read, which starts at 99
    };
    const Case signedCases[] = {
        {"Dec", kOk, -42},
        {"Hex", kOk, 0x8001},
        {"Upper", kOk, 255},
        {"NegHex", kOk, -16},
        {"Plus", kOk, 7},
        {"All", kOk, -1},
        {"Min", kOk, INT32_MIN},
        {"Leading", kOk, 10},
        {"TooBig", kInvalid, 99},
        {"TooSmall", kInvalid, 99},
        {"Junk", kInvalid, 99},
        {"Sign", kInvalid, 99},
        {"Prefix", kInvalid, 99},
        {"Spaced", kInvalid, 99},
        {"Float", kInvalid, 99},
        {"Empty", kNotConfigured, 99},
        {"Nope", kNotConfigured, 99},
        {"dec", kNotConfigured, 99},
    };
    for (const Case& c : signedCases) {
        int32_t v = 99;
        EXPECT_EQ(c.status, GetIntegerConfiguration("N", c.key, &v)) << c.key;
        EXPECT_EQ(c.value, v) << c.key;
    }
    uint32_t u = 99;
    EXPECT_EQ(kOk, GetUIntegerConfiguration("N", "Dec", &u));
    EXPECT_EQ(static_cast<uint32_t>(-42), u);
    EXPECT_EQ(kInvalid, GetUIntegerConfiguration("N", "TooBig", &u));
    int64_t w = 99;
    EXPECT_EQ(kOk, GetInt64Configuration("N", "I64", &w));
    EXPECT_EQ(INT64_MIN, w);
    EXPECT_EQ(kInvalid, GetInt64Configuration("N", "I64Over", &w));
    EXPECT_EQ(kOk, GetInt64Configuration("N", "TooBig", &w));
    EXPECT_EQ(4294967296, w);
    const Case booleans[] = {
        {"T", kOk, 1}, {"F", kOk, 0}, {"One", kOk, 1}, {"Yes", kInvalid, 1}, {"Two", kInvalid, 1}};
    for (const Case& c : booleans) {
        bool b = true;
        EXPECT_EQ(c.status, GetBooleanConfiguration("N", c.key, &b)) << c.key;
        EXPECT_EQ(c.value != 0, b) << c.key;
    }
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration(nullptr, "Dec", nullptr));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("N", "Dec", nullptr));
}

TEST_F(ConfigurationStoreTest, GroupsKeysAndListValues) {
    Load(
        "; comment\r\n\r\n[  PackageName Group  ]\r\n   # indented\r\n"
        "mode[0] = 0x8001, 255, \"  Low, Latency \", \"\", plain text ,\r\n"
        "A = 1\n[H]\nX = 0\n[PackageName Group]\nA = 3, 4\nBad = 1, x, 3\nF = 0.5, -2e3, 1.5f\n");
    const char* g = "PackageName Group";
    EXPECT_EQ(1, HasGroupConfiguration(g));
    EXPECT_EQ(0, HasGroupConfiguration("PackageName"));
    // A repeated group continues; a repeated key is replaced in its place.
    EXPECT_EQ(4u, GetKeyCount(g));
    char* texts[6] = {};
    ASSERT_EQ(6u, GetValuesCount(g, "mode[0]"));
    ASSERT_EQ(kOk, GetStringListConfiguration(g, "mode[0]", texts, 6));
    const std::vector<std::string> expected{"0x8001", "255",        "  Low, Latency ",
                                            "",       "plain text", ""};
    EXPECT_EQ(expected, std::vector<std::string>(texts, texts + 6));

    // A list read copies the smaller of the count asked and the values there,
    // and a bad value among them leaves the whole output alone.
    uint32_t values[3] = {9, 9, 9};
    ASSERT_EQ(kOk, GetUIntegerListConfiguration(g, "A", values, 3));
    EXPECT_EQ((std::vector<uint32_t>{3, 4, 9}), std::vector<uint32_t>(values, values + 3));
    EXPECT_EQ(kInvalid, GetUIntegerListConfiguration(g, "Bad", values, 3));
    EXPECT_EQ(kOk, GetUIntegerListConfiguration(g, "Bad", values, 1));
    EXPECT_EQ((std::vector<uint32_t>{1, 4, 9}), std::vector<uint32_t>(values, values + 3));
    float floats[3] = {7, 7, 7};
    EXPECT_EQ(kInvalid, GetFloatListConfiguration(g, "F", floats, 3));
    ASSERT_EQ(kOk, GetFloatListConfiguration(g, "F", floats, 2));
    EXPECT_EQ((std::vector<float>{0.5f, -2000.0f, 7}), std::vector<float>(floats, floats + 3));
    EXPECT_EQ(kNotConfigured, GetFloatListConfiguration(g, "Nope", floats, 1));
}

TEST_F(ConfigurationStoreTest, IndexedKeysAndTheirCount) {
    Load(
        "[S]\nMode[0] = 0, 0x8001, -1\nMode[1] = 1, 2\nMode[12] = 5\nMode = 1\nModeX[0] = 1\n"
        "Mode[3]x = 1\nSize[s5k3p9] = 4000, 3000\nMode[1] = 7\n");
    EXPECT_EQ(3u, GetLocaleKeyCount("S", "Mode"));
    EXPECT_EQ(1u, GetLocaleKeyCount("S", "Size"));
    EXPECT_EQ(0u, GetLocaleKeyCount("Nope", "Mode"));
    EXPECT_EQ(3u, GetLocaleKeyValuesCount("S", "Mode", "0"));
    EXPECT_EQ(0u, GetLocaleKeyValuesCount("S", "Mode", "2"));
    int32_t row[3] = {};
    ASSERT_EQ(kOk, GetLocaleIntegerListConfiguration("S", "Mode", "0", row, 3));
    EXPECT_EQ((std::vector<int32_t>{0, 0x8001, -1}), std::vector<int32_t>(row, row + 3));
    uint32_t size[2] = {};
    ASSERT_EQ(kOk, GetLocaleUIntegerListConfiguration("S", "Size", "s5k3p9", size, 2));
    EXPECT_EQ(3000u, size[1]);
    char* text = nullptr;
    ASSERT_EQ(kOk, GetLocaleStringConfiguration("S", "Mode", "1", &text));
    EXPECT_STREQ("7", text);
    EXPECT_EQ(kNotConfigured, GetLocaleIntegerListConfiguration("S", "Mode", "2", row, 3));
    EXPECT_EQ(kNotConfigured, GetLocaleStringConfiguration("S", nullptr, "0", &text));
}

TEST_F(ConfigurationStoreTest, MalformedTextIsRefusedWithItsLineAndKeepsTheOldStore) {
    Load("[Keep]\nK = kept\n");
    char* before = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("Keep", "K", &before));
    EXPECT_EQ(1, HostPlatform::LoadConfiguration("K = outside a group\n[G]\n"));
    EXPECT_EQ(3, HostPlatform::LoadConfiguration("[G]\nA = 1\nno equals sign\n"));
    EXPECT_EQ(4, HostPlatform::LoadConfiguration("# c\n\n[G]\n[Open\nA = 1\n"));
    EXPECT_EQ(2, HostPlatform::LoadConfiguration("[G]\n = value\n"));
    EXPECT_EQ(-1, HostPlatform::LoadConfiguration(nullptr));
    EXPECT_EQ(0, HasGroupConfiguration("G"));
    char* after = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("Keep", "K", &after));
    EXPECT_EQ(before, after);
    EXPECT_STREQ("kept", before);
}

TEST_F(ConfigurationStoreTest, ReloadsTakeTheNewestTextAndPeekingReadsIt) {
    const char* a = "[G]\nK = a, b\n";
    Load(a);
    Load("[G]\nK = c\n");
    Load(a);
    std::vector<std::string> values;
    ASSERT_TRUE(HostPlatform::PeekConfiguration("G", "K", &values));
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), values);
    EXPECT_FALSE(HostPlatform::PeekConfiguration("G", "Absent", &values));
    Load("[H]\nK = c\n");
    EXPECT_FALSE(HostPlatform::PeekConfiguration("G", "K", &values));
}

}  // namespace
