// Host system properties: defaults for unset or empty values, the boolean
// words, integer parsing and the value length limit.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <cutils/properties.h>
#include <HostPlatform.h>

namespace {

class PropertiesTest : public ::testing::Test {
protected:
    void SetUp() override { HostPlatform::ResetProperties(); }
    void TearDown() override { HostPlatform::ResetProperties(); }
};

TEST_F(PropertiesTest, UnsetOrEmptyGivesTheDefault) {
    char value[PROPERTY_VALUE_MAX];
    EXPECT_EQ(3, property_get("persist.test.unset", value, "abc"));
    EXPECT_STREQ("abc", value);
    EXPECT_EQ(0, property_get("persist.test.unset", value, nullptr));
    EXPECT_STREQ("", value);

    ASSERT_EQ(0, property_set("persist.test.p", "on"));
    EXPECT_EQ(2, property_get("persist.test.p", value, "default"));
    EXPECT_STREQ("on", value);
    ASSERT_EQ(0, property_set("persist.test.p", ""));
    EXPECT_EQ(7, property_get("persist.test.p", value, "default"));
    EXPECT_STREQ("default", value);
    EXPECT_TRUE(property_get_bool("persist.test.p", true));
    EXPECT_EQ(5, property_get_int32("persist.test.p", 5));
}

TEST_F(PropertiesTest, ValueLengthLimit) {
    const std::string longest(PROPERTY_VALUE_MAX - 1, 'x');  // 91 characters
    const std::string tooLong(PROPERTY_VALUE_MAX, 'y');      // 92 characters
    EXPECT_EQ(0, property_set("len", longest.c_str()));
    EXPECT_EQ(-1, property_set("len", tooLong.c_str()));
    char value[PROPERTY_VALUE_MAX];
    EXPECT_EQ(91, property_get("len", value, nullptr));
    EXPECT_EQ(longest, value);
    EXPECT_EQ(-1, property_set(nullptr, "1"));

    // A long default is cut to fit the buffer.
    char guarded[PROPERTY_VALUE_MAX + 8];
    memset(guarded, '#', sizeof(guarded));
    EXPECT_EQ(91, property_get("unset", guarded, tooLong.c_str()));
    EXPECT_EQ('\0', guarded[91]);
    EXPECT_EQ('#', guarded[PROPERTY_VALUE_MAX]);
}

TEST_F(PropertiesTest, BooleanWords) {
    for (const char* word : {"1", "y", "yes", "on", "true"}) {
        ASSERT_EQ(0, property_set("b", word));
        EXPECT_TRUE(property_get_bool("b", false)) << word;
    }
    for (const char* word : {"0", "n", "no", "off", "false"}) {
        ASSERT_EQ(0, property_set("b", word));
        EXPECT_FALSE(property_get_bool("b", true)) << word;
    }
    for (const char* word : {"TRUE", "Yes", "2", " 1", "enabled"}) {
        ASSERT_EQ(0, property_set("b", word));
        EXPECT_TRUE(property_get_bool("b", true)) << word;
        EXPECT_FALSE(property_get_bool("b", false)) << word;
    }
}

TEST_F(PropertiesTest, IntegersParseLikeThePlatform) {
    struct Case {
        const char* text;
        int32_t expected;
    } cases[] = {
        {"42", 42},
        {"-7", -7},
        {"0x10", 16},
        {"010", 8},
        {"12abc", 12},
        {"abc", -99},
        {"2147483647", INT32_MAX},
        {"2147483648", -99},
        {"-2147483649", -99},
        {"99999999999999999999", -99},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(0, property_set("i", c.text));
        EXPECT_EQ(c.expected, property_get_int32("i", -99)) << c.text;
    }
}

}  // namespace
