// The host fault plan: which call of a kind fails, what the counts say, and
// that clearing the plan forgets it.
#include <gtest/gtest.h>

#include <HostFaults.h>
#include <string>

namespace {

using HostPlatform::FaultKind;

class FaultPlanTest : public ::testing::Test {
protected:
    void SetUp() override { HostPlatform::ClearFaults(); }
    void TearDown() override { HostPlatform::ClearFaults(); }

    // Five calls of `kind`: 'x' for a failing call, '.' for a passing one.
    static std::string FiveCalls(FaultKind kind) {
        std::string pattern;
        for (int i = 0; i < 5; ++i) {
            pattern += HostPlatform::ShouldFail(kind) ? 'x' : '.';
        }
        return pattern;
    }
};

TEST_F(FaultPlanTest, FailsThePlannedCallsOfTheirKindOnly) {
    struct Case {
        const char* name;
        void (*plan)();
        const char* fileOpen;
        const char* fileRead;
        uint64_t injected;
    };
    const Case cases[] = {
        {"no plan", [] {}, ".....", ".....", 0},
        {"first", [] { HostPlatform::FailNth(FaultKind::FileOpen, 1); }, "x....", ".....", 1},
        {"last", [] { HostPlatform::FailNth(FaultKind::FileOpen, 5); }, "....x", ".....", 1},
        {"past the calls", [] { HostPlatform::FailNth(FaultKind::FileOpen, 6); }, ".....", ".....",
         0},
        {"every", [] { HostPlatform::FailEvery(FaultKind::FileRead); }, ".....", "xxxxx", 5},
        {"replaced",
         [] {
             HostPlatform::FailNth(FaultKind::FileOpen, 2);
             HostPlatform::FailNth(FaultKind::FileOpen, 4);
         },
         "...x.", ".....", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HostPlatform::ClearFaults();
        c.plan();
        EXPECT_EQ(c.fileOpen, FiveCalls(FaultKind::FileOpen));
        EXPECT_EQ(c.fileRead, FiveCalls(FaultKind::FileRead));
        EXPECT_EQ(c.injected, HostPlatform::FaultsInjected());
    }
}

TEST_F(FaultPlanTest, CountsEveryCallAndClearingForgetsThePlan) {
    HostPlatform::FailEvery(FaultKind::MetadataAdd);
    FiveCalls(FaultKind::MetadataAdd);
    HostPlatform::ShouldFail(FaultKind::ConfigCount);
    const HostPlatform::FaultCounts counts = HostPlatform::CallCounts();
    EXPECT_EQ(5u, counts[static_cast<size_t>(FaultKind::MetadataAdd)]);
    EXPECT_EQ(1u, counts[static_cast<size_t>(FaultKind::ConfigCount)]);
    EXPECT_EQ(0u, counts[static_cast<size_t>(FaultKind::ConfigNotConfigured)]);

    HostPlatform::ClearFaults();
    EXPECT_EQ(".....", FiveCalls(FaultKind::MetadataAdd));
    EXPECT_EQ(0u, HostPlatform::FaultsInjected());
    EXPECT_EQ(5u, HostPlatform::CallCounts()[static_cast<size_t>(FaultKind::MetadataAdd)]);
    EXPECT_STREQ("MetadataAdd", HostPlatform::FaultKindName(FaultKind::MetadataAdd));
}

}  // namespace
