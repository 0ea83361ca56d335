#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "IuiLayer.h"
#include "common/CapsConstants.h"

namespace {

using Lumora::_CapsBitset;

TEST(CapsBitsetTest, ToUllongDropsBitsAboveTheShiftedWindow) {
    _CapsBitset high;
    high.set(64);
    EXPECT_EQ(0u, high.to_ullong(0));
    EXPECT_EQ(1u, high.to_ullong(64));

    _CapsBitset top;
    top.set(99);
    EXPECT_EQ(0u, top.to_ullong(0));
    EXPECT_EQ(uint64_t{1} << 63, top.to_ullong(36));
    EXPECT_EQ(uint64_t{1} << 35, top.to_ullong(64));
    EXPECT_EQ(0u, top.to_ullong(100));
    EXPECT_EQ(0u, top.to_ullong(255));

    _CapsBitset mixed;
    mixed.set(3).set(63).set(65);
    EXPECT_EQ((uint64_t{1} << 3) | (uint64_t{1} << 63), mixed.to_ullong(0));
    // Bits of the second word move into the returned word as the shift grows.
    EXPECT_EQ((uint64_t{1} << 2) | (uint64_t{1} << 62), mixed.to_ullong(1));
    EXPECT_EQ((uint64_t{1} << 1) | (uint64_t{1} << 61) | (uint64_t{1} << 63), mixed.to_ullong(2));
    EXPECT_EQ(uint64_t{1} | (uint64_t{1} << 60) | (uint64_t{1} << 62), mixed.to_ullong(3));
}

TEST(CapsBitsetTest, TestBeyondTheLastBitThrowsWithTheFixedText) {
    _CapsBitset caps;
    EXPECT_FALSE(caps.test(99));
    try {
        caps.test(100);
        FAIL() << "test(100) must throw";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ("bitset test argument out of range", error.what());
    }
    EXPECT_THROW(caps.test(static_cast<size_t>(-1)), std::out_of_range);
    EXPECT_THROW(caps.set(100), std::out_of_range);
    EXPECT_THROW(caps.reset(100), std::out_of_range);
}

TEST(CapsBitsetTest, ComparesAndPrintsAllHundredBits) {
    _CapsBitset a;
    _CapsBitset b;
    EXPECT_FALSE(a != b);
    b.set(99);
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == b);
    a |= b;
    EXPECT_TRUE(a == b);

    _CapsBitset printed;
    printed.set(0).set(99);
    const std::string text = printed.to_string();
    ASSERT_EQ(100u, text.size());
    EXPECT_EQ('1', text.front());
    EXPECT_EQ('1', text.back());
    EXPECT_EQ(std::string(98, '0'), text.substr(1, 98));

    printed.reset(99);
    printed.set(0, false);
    EXPECT_EQ(std::string(100, '0'), printed.to_string());
    printed.set(42);
    printed.Reset();
    EXPECT_TRUE(printed.none());
}

TEST(CapsBitsetTest, ConstantsHoldExactlyTheirOwnBit) {
    using namespace Lumora;
    const std::pair<_CapsBitset, size_t> samples[] = {
        {kCapsStreamPreview, 0}, {kCapsSHDROption, 16},
        {kCapsQBC4x, 31},        {kCapsOverrideASDStreamDtSpace, 64},
        {kCapsOisCenterOn, 80},  {kCapsPreviewOis, 99}};
    for (const auto& sample : samples) {
        _CapsBitset expected;
        expected.set(sample.second);
        EXPECT_TRUE(sample.first == expected) << "bit " << sample.second;
    }
}

TEST(CapsBitsetTest, CapabilityNumbersAreFixed) {
    using namespace Lumora;
    EXPECT_EQ(46u, CapsVideoCameraMode);
    EXPECT_EQ(81u, CapsSensorModeFlag81);
    EXPECT_EQ(81u, Caps4x4Izoom);
    EXPECT_EQ(99u, CapsPreviewOis);
    EXPECT_EQ(7u, TypeLogicalCamera);
    EXPECT_EQ(1u, TypeFeature1Snapshot);
    EXPECT_EQ(2u, TypeFeature2Snapshot);
    EXPECT_EQ(16, EStreamTypeMax);
    EXPECT_EQ(16u, sizeof(_CapsBitset));
}

}  // namespace
