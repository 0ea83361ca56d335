#include <gtest/gtest.h>

#include <HostConfigText.h>
#include <HostConfigValues.h>

#include <string>
#include <vector>

namespace HostPlatform {
namespace {

// How the text's groups, keys and malformed lines are read shows in the lint
// findings of tools/uilayer-sim/tests/lint.

TEST(HostConfigValuesTest, TellsJunkFromNumbersOutOfRange) {
    struct Case {
        const char* text;
        NumberStatus uint32;
        NumberStatus int64;
    };
    const Case cases[] = {
        {"-2147483648", NumberStatus::Ok, NumberStatus::Ok},
        {"-2147483649", NumberStatus::OutOfRange, NumberStatus::Ok},
        {"0x100000000", NumberStatus::OutOfRange, NumberStatus::Ok},
        {"0xFFFFFFFFFFFFFFFF", NumberStatus::OutOfRange, NumberStatus::Ok},
        {"-0x8000000000000001", NumberStatus::OutOfRange, NumberStatus::OutOfRange},
        {"99999999999999999999", NumberStatus::OutOfRange, NumberStatus::OutOfRange},
        {"99999999999999999999x", NumberStatus::NotANumber, NumberStatus::NotANumber},
        {"0x", NumberStatus::NotANumber, NumberStatus::NotANumber},
        {"", NumberStatus::NotANumber, NumberStatus::NotANumber},
        {"1 2", NumberStatus::NotANumber, NumberStatus::NotANumber},
    };
    for (const Case& c : cases) {
        uint32_t u = 7;
        int64_t l = 7;
        EXPECT_EQ(c.uint32, ParseUInt32(c.text, &u)) << c.text;
        EXPECT_EQ(c.int64, ParseInt64(c.text, &l)) << c.text;
        if (c.uint32 != NumberStatus::Ok) {
            EXPECT_EQ(7u, u) << c.text;
        }
    }
    bool b = false;
    EXPECT_FALSE(ParseBoolean(std::string("true\0x", 6), &b));
}

}  // namespace
}  // namespace HostPlatform
