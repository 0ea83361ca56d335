#include <gtest/gtest.h>

#include <hardware/gralloc.h>
#include <system/graphics.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "StreamCombinations.h"
#include "Sweep.h"
#include "SweepOutcome.h"

namespace UilayerSim {
namespace {

TEST(StreamCombinationsTest, EachTableHoldsItsCombinationsOnceAndLevelsAddUp) {
    CombinationSelection all;
    all.level = HardwareLevel::Level3;
    all.tenBit = true;
    all.useCases = true;
    std::map<std::string, size_t> counts;
    std::set<std::string> labels;
    for (const StreamCombination& combination : GuaranteedCombinations(all)) {
        ++counts[TableName(combination.table)];
        EXPECT_TRUE(labels
                        .insert(std::string(TableName(combination.table)) + ": " +
                                CombinationLabel(combination))
                        .second)
            << CombinationLabel(combination);
    }
    const std::map<std::string, size_t> expected = {
        {"legacy", 8},  {"limited", 6}, {"full", 6},       {"raw", 8},
        {"level 3", 2}, {"ten-bit", 8}, {"use cases", 22},
    };
    EXPECT_EQ(expected, counts);

    const struct {
        HardwareLevel level;
        bool raw;
        size_t count;
    } levels[] = {
        {HardwareLevel::Legacy, false, 8}, {HardwareLevel::Limited, false, 14},
        {HardwareLevel::Full, false, 20},  {HardwareLevel::Full, true, 28},
        {HardwareLevel::Legacy, true, 16}, {HardwareLevel::Level3, false, 30},
    };
    for (const auto& level : levels) {
        CombinationSelection selection;
        selection.level = level.level;
        selection.raw = level.raw;
        EXPECT_EQ(level.count, GuaranteedCombinations(selection).size());
    }
}

TEST(StreamCombinationsTest, SizeClassesFollowTheArray) {
    const struct {
        uint32_t width, height;
        StreamSize preview, record;
    } cases[] = {
        {8192, 6144, {1920, 1080}, {3840, 2160}}, {3840, 2160, {1920, 1080}, {3840, 2160}},
        {4000, 3000, {1920, 1080}, {3840, 2160}}, {1600, 1200, {1600, 1200}, {1600, 900}},
        {3000, 2000, {1920, 1080}, {2992, 1683}}, {4000, 2000, {1920, 1080}, {3552, 1998}},
    };
    for (const auto& c : cases) {
        const SizeClasses sizes = SizesForArray(c.width, c.height);
        EXPECT_EQ(c.preview.width, sizes.preview.width) << c.width;
        EXPECT_EQ(c.preview.height, sizes.preview.height) << c.width;
        EXPECT_EQ(c.record.width, sizes.record.width) << c.width;
        EXPECT_EQ(c.record.height, sizes.record.height) << c.width;
        EXPECT_EQ(c.width, sizes.Of(SizeClass::Maximum).width);
        EXPECT_EQ(c.height, sizes.Of(SizeClass::Maximum).height);
        EXPECT_EQ(640u, sizes.Of(SizeClass::Vga).width);
        EXPECT_EQ(480u, sizes.Of(SizeClass::Vga).height);
    }
}

TEST(SweepOutcomeTest, SurvivesThePipeAndKeepsTheAbortMessage) {
    CombinationOutcome outcome;
    outcome.staticCode = 0;
    outcome.streamCode = -22;
    outcome.streams = {{"Preview", -1, true}, {"None", 2, false}};
    outcome.logicalCaps = {"CapsStreamPreview", "CapsSensorModeFlag81/Caps4x4Izoom"};
    outcome.sensorModeCode = 6;
    outcome.sensorModeIndex = 3;
    outcome.hasPipeline = true;
    outcome.pipeline = "Preview Low Latency";
    const CombinationOutcome back = DecodeOutcome(EncodeOutcome(outcome));
    EXPECT_EQ(OutcomeStatus::Failed, back.status);
    EXPECT_EQ(-22, back.streamCode);
    ASSERT_EQ(2u, back.streams.size());
    EXPECT_EQ("None", back.streams[1].role);
    EXPECT_EQ(2, back.streams[1].cameraIndex);
    EXPECT_FALSE(back.streams[1].listed);
    EXPECT_EQ(outcome.logicalCaps, back.logicalCaps);
    EXPECT_EQ(3, back.sensorModeIndex);
    EXPECT_EQ("Preview Low Latency", back.pipeline);

    const CombinationOutcome aborted =
        DecodeOutcome("log E last words\nuilayer-sim: the library aborted the process during X\n");
    EXPECT_EQ(std::vector<std::string>{"E last words"}, aborted.log);
    EXPECT_EQ("the library aborted the process during X", aborted.message);
    EXPECT_FALSE(aborted.hasPipeline);
}

TEST(SweepReportTest, SummaryNamesFailuresAbortsAndStreamsWithoutRole) {
    SweepResult result;
    result.sizes = SizesForArray(4000, 3000);
    SweepRow good;
    good.combination = {CombinationTable::Legacy, {{StreamKind::Jpeg, SizeClass::Maximum}}};
    good.outcome = DecodeOutcome("codes 0 0\nstream SnapshotJPEG -1 1\nsensor 0 1\n");
    SweepRow failed = good;
    failed.combination.table = CombinationTable::Full;
    failed.outcome = DecodeOutcome("codes 0 -22\nstream None -1 0\nsensor 6 -1\n");
    SweepRow aborted = good;
    aborted.outcome.status = OutcomeStatus::Aborted;
    aborted.outcome.message = "the library aborted the process during X";
    result.rows = {good, failed, aborted};

    const ReportNode report = SweepReport(result);
    ReportNode tables = ReportNode::Map();
    tables.Add("tables", *report.Find("tables"));
    EXPECT_EQ("tables: legacy, full, legacy\n", RenderText(tables));
    const ReportNode& summary = *report.Find("summary");
    EXPECT_EQ("3", summary.Find("combinations")->Scalar());
    EXPECT_EQ("1", summary.Find("configured")->Scalar());
    EXPECT_EQ("JPEG MAX", summary.Find("failed combinations")->Items().at(0).Scalar());
    EXPECT_EQ("JPEG MAX", summary.Find("aborted combinations")->Items().at(0).Scalar());
    ASSERT_EQ(1u, summary.Find("streams without a role")->Items().size());
    const ReportNode& abortedRow = report.Find("combinations")->Items().at(2);
    EXPECT_EQ(nullptr, abortedRow.Find("return codes"));
    EXPECT_EQ("aborted", abortedRow.Find("result")->Scalar());

    const std::string json = RenderSweepJson(report);
    EXPECT_NE(std::string::npos, json.find("\"streams_without_a_role\": [\"JPEG MAX: JPEG MAX\"]"));
    EXPECT_NE(std::string::npos, json.find("\"stream_capabilities\": -22"));
    EXPECT_EQ(std::string::npos, json.find("\"return codes\""));
}

// The sweep as the command runs it (one child per combination, an abort ending
// only its own, the command line) is checked by command_line_test.py and the
// golden report of the bundled device.

}  // namespace
}  // namespace UilayerSim
