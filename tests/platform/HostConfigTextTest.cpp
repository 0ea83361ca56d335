#include <gtest/gtest.h>

#include <HostConfigText.h>
#include <HostConfigValues.h>

#include <string>
#include <vector>

namespace HostPlatform {
namespace {

TEST(HostConfigTextTest, KeepsLinesOfGroupsAndKeysAsTheStoreReadsThem) {
    const ConfigText config = ReadConfigText(
        "\xEF\xBB\xBF# comment\r\n"
        "  ; another\r\n"
        "[OPreviewPipelines]\r\n"
        "mode[0] = 0x8005 , 255,1, \"Preview, low latency\"\r\n"
        "[ PackageName Group ]\n"
        "OisCenterOnApp =\n"
        "[OPreviewPipelines]\n"
        "mode[1] = 1\n"
        "mode[0] = 2\n");
    ASSERT_EQ(2u, config.groups.size());
    const ConfigGroup* pipelines = config.Find("OPreviewPipelines");
    ASSERT_NE(nullptr, pipelines);
    EXPECT_EQ(3, pipelines->line);
    // A repeated group header continues the group; a repeated key keeps its
    // place and takes the later values and line.
    ASSERT_EQ(2u, pipelines->keys.size());
    EXPECT_EQ("mode[0]", pipelines->keys[0].name);
    EXPECT_EQ(std::vector<std::string>{"2"}, pipelines->keys[0].values);
    EXPECT_EQ(9, pipelines->keys[0].line);
    EXPECT_EQ(8, pipelines->keys[1].line);
    const ConfigGroup* packages = config.Find("PackageName Group");
    ASSERT_NE(nullptr, packages);
    ASSERT_NE(nullptr, packages->Find("OisCenterOnApp"));
    EXPECT_TRUE(packages->Find("OisCenterOnApp")->values.empty());
    ASSERT_EQ(1u, config.problems.size());
    EXPECT_EQ(nullptr, config.FirstMalformed());
    EXPECT_EQ("repeats the key of line 4, whose values are dropped",
              DescribeConfigProblem(config.problems[0]));
}

TEST(HostConfigTextTest, CollectsEveryMalformedLineAndReadsOn) {
    const ConfigText config = ReadConfigText(
        "outside\n"
        "[G]\n"
        "no equals\n"
        "[Open\n"
        " = value\n"
        "A = 1\n");
    std::vector<std::string> problems;
    for (const ConfigProblem& problem : config.problems) {
        problems.push_back(std::to_string(problem.line) + " [" + problem.group + "] " +
                           DescribeConfigProblem(problem));
    }
    EXPECT_EQ((std::vector<std::string>{"1 [] text outside a group", "3 [G] a line with no '='",
                                        "4 [] a group line must end with ']'",
                                        "5 [G] a key line with no key"}),
              problems);
    ASSERT_NE(nullptr, config.FirstMalformed());
    EXPECT_EQ(1, config.FirstMalformed()->line);
    // The broken header left [G] open.
    ASSERT_NE(nullptr, config.Find("G"));
    EXPECT_NE(nullptr, config.Find("G")->Find("A"));
}

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
