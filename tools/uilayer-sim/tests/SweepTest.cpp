#include <gtest/gtest.h>
#include <hardware/gralloc.h>

#include "sweep/StreamCombinations.h"
#include "sweep/Sweep.h"
#include "sweep/SweepOutcome.h"

namespace UilayerSim {
namespace {

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
}

TEST(StreamCombinationsTest, HighSpeedIsAPreviewAndAtMostOneVideoStream) {
    CombinationSelection selection;
    selection.highSpeed = true;
    selection.raw = true;
    const std::vector<StreamCombination> combinations = GuaranteedCombinations(selection);
    ASSERT_EQ(2u, combinations.size());
    EXPECT_EQ("PRIV PREVIEW + PRIV PREVIEW [VIDEO]", CombinationLabel(combinations[1]));
    const SizeClasses sizes = SizesForArray(4000, 3000);
    const StreamSetup preview =
        MakeStream(combinations[1].streams[0], CombinationTable::HighSpeed, sizes, "p");
    const StreamSetup video =
        MakeStream(combinations[1].streams[1], CombinationTable::HighSpeed, sizes, "v");
    EXPECT_EQ(preview.width, video.width);
    EXPECT_EQ(static_cast<uint32_t>(GRALLOC_USAGE_HW_VIDEO_ENCODER), video.usage);
    EXPECT_NE(static_cast<uint32_t>(GRALLOC_USAGE_HW_VIDEO_ENCODER), preview.usage);
}

// The sweep as the command runs it (one child per combination, an abort ending
// only its own, the command line) is checked by command_line_test.py and the
// golden report of the bundled device.

}  // namespace
}  // namespace UilayerSim
