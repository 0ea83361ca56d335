// Host configuration store: parsing, typed reads and their status codes.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
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

TEST_F(ConfigurationStoreTest, GroupNamesAreTrimmedAndMayHoldSpaces) {
    Load(
        "# header comment\n"
        "[  PackageName Group  ]\n"
        "SystemCamera = com.example.camera\n"
        "[a]b]\n"
        "x = 1\n");
    EXPECT_EQ(1, HasGroupConfiguration("PackageName Group"));
    EXPECT_EQ(1, HasGroupConfiguration("a]b"));
    EXPECT_EQ(0, HasGroupConfiguration("PackageName"));
    char* text = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("PackageName Group", "SystemCamera", &text));
    EXPECT_STREQ("com.example.camera", text);
}

TEST_F(ConfigurationStoreTest, CommentsBlankLinesAndCrLfAreIgnored) {
    Load(
        "; leading comment\r\n"
        "\r\n"
        "[G]\r\n"
        "   # indented comment\r\n"
        "Key = a , b\r\n"
        "Last = z");
    EXPECT_EQ(2u, GetKeyCount("G"));
    char* values[2] = {};
    ASSERT_EQ(kOk, GetStringListConfiguration("G", "Key", values, 2));
    EXPECT_STREQ("a", values[0]);
    EXPECT_STREQ("b", values[1]);
    char* last = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("G", "Last", &last));
    EXPECT_STREQ("z", last);
}

TEST_F(ConfigurationStoreTest, QuotedValuesKeepCommasAndSpaces) {
    Load(
        "[P]\n"
        "mode[0] = 0x8001, 255, \"  Low, Latency \", \"\", plain text ,\n");
    ASSERT_EQ(6u, GetValuesCount("P", "mode[0]"));
    char* values[6] = {};
    ASSERT_EQ(kOk, GetStringListConfiguration("P", "mode[0]", values, 6));
    EXPECT_STREQ("0x8001", values[0]);
    EXPECT_STREQ("255", values[1]);
    EXPECT_STREQ("  Low, Latency ", values[2]);
    EXPECT_STREQ("", values[3]);
    EXPECT_STREQ("plain text", values[4]);
    EXPECT_STREQ("", values[5]);
}

TEST_F(ConfigurationStoreTest, EmptyRightSideIsAKeyWithoutValues) {
    Load("[G]\nEmpty =\nFull = 1\n");
    EXPECT_EQ(2u, GetKeyCount("G"));
    EXPECT_EQ(0u, GetValuesCount("G", "Empty"));
    int32_t value = 77;
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("G", "Empty", &value));
    char* text = nullptr;
    EXPECT_EQ(kNotConfigured, GetStringConfiguration("G", "Empty", &text));
    EXPECT_EQ(77, value);
    uint32_t list[2] = {5, 6};
    EXPECT_EQ(kOk, GetUIntegerListConfiguration("G", "Empty", list, 2));
    EXPECT_EQ(5u, list[0]);
    EXPECT_EQ(6u, list[1]);
}

TEST_F(ConfigurationStoreTest, RepeatedKeyReplacesInPlaceAndRepeatedGroupContinues) {
    Load(
        "[G]\n"
        "A = 1\n"
        "B = 2\n"
        "[H]\n"
        "X = 0\n"
        "[G]\n"
        "A = 3, 4\n"
        "C = 5\n");
    EXPECT_EQ(3u, GetKeyCount("G"));
    EXPECT_EQ(2u, GetValuesCount("G", "A"));
    uint32_t values[2] = {};
    ASSERT_EQ(kOk, GetUIntegerListConfiguration("G", "A", values, 2));
    EXPECT_EQ(3u, values[0]);
    EXPECT_EQ(4u, values[1]);
    // The replaced key keeps its place: Mode rows stay in file order.
    Load("[M]\nMode[0] = a\nMode[1] = b\nMode[0] = c\n");
    char* row = nullptr;
    ASSERT_EQ(kOk, GetLocaleStringConfiguration("M", "Mode", "0", &row));
    EXPECT_STREQ("c", row);
    EXPECT_EQ(2u, GetLocaleKeyCount("M", "Mode"));
}

TEST_F(ConfigurationStoreTest, SignedReadsAcceptDecimalHexAndWrap) {
    Load(
        "[N]\n"
        "Dec = -42\n"
        "Hex = 0x8001\n"
        "HexUpper = 0XfF\n"
        "NegHex = -0x10\n"
        "Plus = +7\n"
        "All = 0xFFFFFFFF\n"
        "Min = -2147483648\n"
        "Max = 4294967295\n"
        "TooBig = 4294967296\n"
        "TooSmall = -2147483649\n"
        "Leading = 010\n");
    int32_t v = 0;
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Dec", &v));
    EXPECT_EQ(-42, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Hex", &v));
    EXPECT_EQ(0x8001, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "HexUpper", &v));
    EXPECT_EQ(255, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "NegHex", &v));
    EXPECT_EQ(-16, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Plus", &v));
    EXPECT_EQ(7, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "All", &v));
    EXPECT_EQ(-1, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Min", &v));
    EXPECT_EQ(INT32_MIN, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Max", &v));
    EXPECT_EQ(-1, v);
    EXPECT_EQ(kOk, GetIntegerConfiguration("N", "Leading", &v));
    EXPECT_EQ(10, v);
    v = 99;
    EXPECT_EQ(kInvalid, GetIntegerConfiguration("N", "TooBig", &v));
    EXPECT_EQ(kInvalid, GetIntegerConfiguration("N", "TooSmall", &v));
    EXPECT_EQ(99, v);
}

TEST_F(ConfigurationStoreTest, UnsignedReadOfMinusOneGivesAllBits) {
    Load("[N]\nNeg = -1\nHex = 0xFFFFFFFF\nBig = 0x100000000\n");
    uint32_t v = 0;
    EXPECT_EQ(kOk, GetUIntegerConfiguration("N", "Neg", &v));
    EXPECT_EQ(0xFFFFFFFFu, v);
    EXPECT_EQ(kOk, GetUIntegerConfiguration("N", "Hex", &v));
    EXPECT_EQ(0xFFFFFFFFu, v);
    v = 3;
    EXPECT_EQ(kInvalid, GetUIntegerConfiguration("N", "Big", &v));
    EXPECT_EQ(3u, v);
}

TEST_F(ConfigurationStoreTest, Int64ReadsTheFullRange) {
    Load(
        "[N]\n"
        "Max = 9223372036854775807\n"
        "Min = -9223372036854775808\n"
        "Under = -9223372036854775809\n"
        "Over = 0x10000000000000000\n"
        "Ns = 33333333\n");
    int64_t v = 0;
    EXPECT_EQ(kOk, GetInt64Configuration("N", "Max", &v));
    EXPECT_EQ(INT64_MAX, v);
    EXPECT_EQ(kOk, GetInt64Configuration("N", "Min", &v));
    EXPECT_EQ(INT64_MIN, v);
    EXPECT_EQ(kOk, GetInt64Configuration("N", "Ns", &v));
    EXPECT_EQ(33333333, v);
    EXPECT_EQ(kInvalid, GetInt64Configuration("N", "Under", &v));
    EXPECT_EQ(kInvalid, GetInt64Configuration("N", "Over", &v));
}

TEST_F(ConfigurationStoreTest, IntegerJunkDoesNotConvert) {
    Load(
        "[N]\n"
        "Trailing = 12abc\n"
        "Sign = -\n"
        "Prefix = 0x\n"
        "Spaced = \" 5\"\n"
        "Float = 1.5\n"
        "Word = ten\n"
        "Quoted = \"\"\n");
    for (const char* key : {"Trailing", "Sign", "Prefix", "Spaced", "Float", "Word", "Quoted"}) {
        int32_t v = 123;
        EXPECT_EQ(kInvalid, GetIntegerConfiguration("N", key, &v)) << key;
        EXPECT_EQ(123, v) << key;
        int64_t w = 5;
        EXPECT_EQ(kInvalid, GetInt64Configuration("N", key, &w)) << key;
        EXPECT_EQ(5, w) << key;
    }
}

TEST_F(ConfigurationStoreTest, BooleansInAnyCase) {
    Load("[B]\nA = TRUE\nB = False\nC = 1\nD = 0\nE = yes\nF = 2\n");
    bool v = false;
    EXPECT_EQ(kOk, GetBooleanConfiguration("B", "A", &v));
    EXPECT_TRUE(v);
    EXPECT_EQ(kOk, GetBooleanConfiguration("B", "B", &v));
    EXPECT_FALSE(v);
    EXPECT_EQ(kOk, GetBooleanConfiguration("B", "C", &v));
    EXPECT_TRUE(v);
    EXPECT_EQ(kOk, GetBooleanConfiguration("B", "D", &v));
    EXPECT_FALSE(v);
    v = true;
    EXPECT_EQ(kInvalid, GetBooleanConfiguration("B", "E", &v));
    EXPECT_EQ(kInvalid, GetBooleanConfiguration("B", "F", &v));
    EXPECT_TRUE(v);
}

TEST_F(ConfigurationStoreTest, MissingGroupOrKeyIsNotConfigured) {
    Load("[G]\nK = 1\n");
    int32_t v = 8;
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("Nope", "K", &v));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("G", "Nope", &v));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("G", "k", &v));  // case matters
    EXPECT_EQ(8, v);
    float f[1] = {};
    EXPECT_EQ(kNotConfigured, GetFloatListConfiguration("G", "Nope", f, 1));
    EXPECT_EQ(0u, GetValuesCount("G", "Nope"));
    EXPECT_EQ(0u, GetKeyCount("Nope"));
    EXPECT_EQ(0, HasGroupConfiguration("Nope"));
}

TEST_F(ConfigurationStoreTest, ListReadsCopyMinOfCountAndAvailable) {
    Load("[L]\nThree = 1, 2, 3\nF = 0.5, -2e3, .25\nBad = 1, x, 3\nBadTail = 1, 2, x\n");
    uint32_t shorter[2] = {0, 0};
    ASSERT_EQ(kOk, GetUIntegerListConfiguration("L", "Three", shorter, 2));
    EXPECT_EQ(1u, shorter[0]);
    EXPECT_EQ(2u, shorter[1]);

    uint32_t longer[5] = {9, 9, 9, 9, 9};
    ASSERT_EQ(kOk, GetUIntegerListConfiguration("L", "Three", longer, 5));
    EXPECT_EQ((std::vector<uint32_t>{1, 2, 3, 9, 9}), std::vector<uint32_t>(longer, longer + 5));

    float floats[4] = {7, 7, 7, 7};
    ASSERT_EQ(kOk, GetFloatListConfiguration("L", "F", floats, 4));
    EXPECT_FLOAT_EQ(0.5f, floats[0]);
    EXPECT_FLOAT_EQ(-2000.0f, floats[1]);
    EXPECT_FLOAT_EQ(0.25f, floats[2]);
    EXPECT_FLOAT_EQ(7.0f, floats[3]);

    uint32_t untouched[3] = {4, 4, 4};
    EXPECT_EQ(kInvalid, GetUIntegerListConfiguration("L", "Bad", untouched, 3));
    EXPECT_EQ((std::vector<uint32_t>{4, 4, 4}), std::vector<uint32_t>(untouched, untouched + 3));
    // A bad value beyond the requested count is not looked at.
    EXPECT_EQ(kOk, GetUIntegerListConfiguration("L", "BadTail", untouched, 2));
    EXPECT_EQ((std::vector<uint32_t>{1, 2, 4}), std::vector<uint32_t>(untouched, untouched + 3));

    float badFloat[3] = {1, 1, 1};
    EXPECT_EQ(kInvalid, GetFloatListConfiguration("L", "Bad", badFloat, 3));
    EXPECT_FLOAT_EQ(1.0f, badFloat[0]);
}

TEST_F(ConfigurationStoreTest, FloatsMustConvertWhole) {
    Load("[F]\nA = 1.5f\nB = 1e\nC = -0.0\n");
    float v = 3;
    EXPECT_EQ(kInvalid, GetFloatListConfiguration("F", "A", &v, 1));
    EXPECT_EQ(kInvalid, GetFloatListConfiguration("F", "B", &v, 1));
    EXPECT_FLOAT_EQ(3.0f, v);
    EXPECT_EQ(kOk, GetFloatListConfiguration("F", "C", &v, 1));
    EXPECT_FLOAT_EQ(0.0f, v);
}

TEST_F(ConfigurationStoreTest, IndexedKeysAndTheirCount) {
    Load(
        "[SHDRTypeMatching]\n"
        "Mode[0] = 0, 0x8001, 0x3, 1, 2, -1\n"
        "Mode[1] = 1, 2\n"
        "Mode[12] = 5\n"
        "Mode = 1\n"
        "ModeX[0] = 1\n"
        "Mode[3]x = 1\n"
        "Size[s5k3p9] = 4000, 3000\n"
        "com.example.app[0] = a\n"
        "Other = 2\n");
    EXPECT_EQ(3u, GetLocaleKeyCount("SHDRTypeMatching", "Mode"));
    EXPECT_EQ(1u, GetLocaleKeyCount("SHDRTypeMatching", "Size"));
    EXPECT_EQ(1u, GetLocaleKeyCount("SHDRTypeMatching", "com.example.app"));
    EXPECT_EQ(0u, GetLocaleKeyCount("SHDRTypeMatching", "Other"));
    EXPECT_EQ(0u, GetLocaleKeyCount("Nope", "Mode"));

    EXPECT_EQ(6u, GetLocaleKeyValuesCount("SHDRTypeMatching", "Mode", "0"));
    EXPECT_EQ(1u, GetLocaleKeyValuesCount("SHDRTypeMatching", "Mode", "12"));
    EXPECT_EQ(0u, GetLocaleKeyValuesCount("SHDRTypeMatching", "Mode", "2"));

    int32_t row[6] = {};
    ASSERT_EQ(kOk, GetLocaleIntegerListConfiguration("SHDRTypeMatching", "Mode", "0", row, 6));
    EXPECT_EQ((std::vector<int32_t>{0, 0x8001, 3, 1, 2, -1}), std::vector<int32_t>(row, row + 6));
    uint32_t urow[6] = {};
    ASSERT_EQ(kOk, GetLocaleUIntegerListConfiguration("SHDRTypeMatching", "Mode", "0", urow, 6));
    EXPECT_EQ(0xFFFFFFFFu, urow[5]);
    EXPECT_EQ(kNotConfigured,
              GetLocaleIntegerListConfiguration("SHDRTypeMatching", "Mode", "2", row, 6));

    uint32_t size[2] = {};
    ASSERT_EQ(kOk,
              GetLocaleUIntegerListConfiguration("SHDRTypeMatching", "Size", "s5k3p9", size, 2));
    EXPECT_EQ(4000u, size[0]);
    EXPECT_EQ(3000u, size[1]);

    char* app = nullptr;
    ASSERT_EQ(kOk, GetLocaleStringConfiguration("SHDRTypeMatching", "com.example.app", "0", &app));
    EXPECT_STREQ("a", app);
    char* texts[2] = {};
    ASSERT_EQ(kOk, GetLocaleStringListConfiguration("SHDRTypeMatching", "Mode", "1", texts, 2));
    EXPECT_STREQ("1", texts[0]);
    EXPECT_STREQ("2", texts[1]);
}

TEST_F(ConfigurationStoreTest, MalformedTextIsRefusedWithItsLineAndKeepsTheOldStore) {
    Load("[Keep]\nK = kept\n");
    char* before = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("Keep", "K", &before));

    EXPECT_EQ(1, HostPlatform::LoadConfiguration("K = outside a group\n[G]\n"));
    EXPECT_EQ(3, HostPlatform::LoadConfiguration("[G]\nA = 1\nno equals sign\n"));
    EXPECT_EQ(4, HostPlatform::LoadConfiguration("# c\n\n[G]\n[Open\nA = 1\n"));
    EXPECT_EQ(2, HostPlatform::LoadConfiguration("[G]\n = value\n"));
    EXPECT_EQ(3, HostPlatform::LoadConfiguration("[G]\r\nA = 1\r\n[G] trailing\r\n"));
    EXPECT_EQ(-1, HostPlatform::LoadConfiguration(nullptr));

    // Nothing of the refused texts is kept; the earlier strings stay valid.
    EXPECT_EQ(0, HasGroupConfiguration("G"));
    EXPECT_EQ(1u, GetKeyCount("Keep"));
    char* after = nullptr;
    ASSERT_EQ(kOk, GetStringConfiguration("Keep", "K", &after));
    EXPECT_EQ(before, after);
    EXPECT_STREQ("kept", before);
}

TEST_F(ConfigurationStoreTest, LoadingReplacesTheWholeStore) {
    Load("[A]\nK = 1\n");
    Load("[B]\nK = 2\n");
    EXPECT_EQ(0, HasGroupConfiguration("A"));
    EXPECT_EQ(1, HasGroupConfiguration("B"));
}

TEST_F(ConfigurationStoreTest, LoadsFromAFile) {
    char path[] = "/tmp/uilayer_config_XXXXXX";
    const int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    const char text[] = "\xEF\xBB\xBF[File]\nValue = 0x10\n";
    ASSERT_EQ(static_cast<ssize_t>(sizeof(text) - 1), write(fd, text, sizeof(text) - 1));
    close(fd);
    EXPECT_EQ(0, HostPlatform::LoadConfigurationFile(path));
    uint32_t v = 0;
    EXPECT_EQ(kOk, GetUIntegerConfiguration("File", "Value", &v));
    EXPECT_EQ(16u, v);
    unlink(path);
    EXPECT_EQ(-1, HostPlatform::LoadConfigurationFile(path));
    EXPECT_EQ(-1, HostPlatform::LoadConfigurationFile("/tmp"));
    EXPECT_EQ(-1, HostPlatform::LoadConfigurationFile(nullptr));
    EXPECT_EQ(1, HasGroupConfiguration("File"));
}

TEST_F(ConfigurationStoreTest, NullArgumentsAreNotConfigured) {
    Load("[G]\nK = 1\nM[0] = 1\n");
    int32_t i = 0;
    char* s = nullptr;
    uint32_t u[1] = {};
    EXPECT_EQ(0, HasGroupConfiguration(nullptr));
    EXPECT_EQ(0u, GetKeyCount(nullptr));
    EXPECT_EQ(0u, GetValuesCount(nullptr, "K"));
    EXPECT_EQ(0u, GetValuesCount("G", nullptr));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration(nullptr, "K", &i));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("G", nullptr, &i));
    EXPECT_EQ(kNotConfigured, GetIntegerConfiguration("G", "K", nullptr));
    EXPECT_EQ(kNotConfigured, GetStringConfiguration("G", "K", nullptr));
    EXPECT_EQ(kNotConfigured, GetUIntegerListConfiguration("G", "K", nullptr, 1));
    EXPECT_EQ(0u, GetLocaleKeyCount("G", nullptr));
    EXPECT_EQ(0u, GetLocaleKeyValuesCount("G", "M", nullptr));
    EXPECT_EQ(kNotConfigured, GetLocaleStringConfiguration("G", nullptr, "0", &s));
    EXPECT_EQ(kNotConfigured, GetLocaleUIntegerListConfiguration("G", "M", nullptr, u, 1));
}

TEST_F(ConfigurationStoreTest, ConcurrentReadsSeeConsistentValues) {
    Load("[G]\nA = 1, 2, 3\n");
    std::vector<std::thread> readers;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        readers.emplace_back([t, &failures] {
            for (int i = 0; i < 2000; ++i) {
                uint32_t values[3] = {};
                if (GetUIntegerListConfiguration("G", "A", values, 3) != 0 || values[2] != 3) {
                    ++failures[t];
                }
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(3, HostPlatform::LoadConfiguration("[G]\nA = 1, 2\nbroken\n"));
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
    EXPECT_EQ((std::vector<int>{0, 0, 0, 0}), failures);
}

}  // namespace
