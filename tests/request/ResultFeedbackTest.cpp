// Applied AEC records and the MLFT switch of capture results.
#include <cstring>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class ResultFeedbackTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        Build(MultiCamera(3, 0, 0));
    }
    int Apply(Result& result) {
        return m_lastResult.UpdateResultAppliedCaps(result.Get(), m_session.get());
    }
    int Apply(Metadata& metadata) {
        camera3_capture_result_t result = {};
        result.result = metadata.Get();
        return m_lastResult.UpdateResultAppliedCaps(&result, m_session.get());
    }
    const AecInfo& Aec(uint32_t cam) const { return m_lastResult.m_lastReqCameraAECInfo[cam]; }
};

TEST_F(ResultFeedbackTest, RecordsAreStickyPerCameraAndTheFirstOneWins) {
    Result first(1);
    first.Aec(1, 3).Aec(0, 2).Aec(1, 4).Aec(5, 1).Mlft(1);
    EXPECT_EQ(0, Apply(first));
    EXPECT_EQ(2, Aec(0).expCount);
    EXPECT_EQ(3, Aec(1).expCount);
    EXPECT_EQ(0, Aec(2).expCount);  // no record: still cleared
    EXPECT_EQ(0, Aec(5).expCount);  // not a camera of the session
    EXPECT_EQ(1u, m_lastResult.m_isEnableMlft);
    EXPECT_TRUE(LoggedExactly("I meta result AecInfo[1:1.000000:2.000000:3]"));
    EXPECT_TRUE(LoggedExactly(
        "V meta result physicalCamId 2 m_lastReqCameraAECInfo[0:0.000000:0.000000:0]"));

    // Metadata without the MLFT block switches it off; records of other
    // cameras stay.
    Result second(2);
    second.Aec(2, 4);
    Apply(second);
    EXPECT_EQ(2, Aec(0).expCount);
    EXPECT_EQ(4, Aec(2).expCount);
    EXPECT_EQ(0u, m_lastResult.m_isEnableMlft);
    EXPECT_TRUE(LoggedExactly("I read MlftLTMPars fail"));

    // Without metadata (or without a result) nothing changes.
    Result on(3);
    Apply(on.Mlft(1));
    Result buffersOnly(4, false);
    EXPECT_EQ(0, Apply(buffersOnly));
    EXPECT_EQ(0, m_lastResult.UpdateResultAppliedCaps(nullptr, m_session.get()));
    EXPECT_EQ(1u, m_lastResult.m_isEnableMlft);
    EXPECT_TRUE(LoggedExactly("E read ExposureCountList is NULL"));
}

TEST_F(ResultFeedbackTest, ShortPayloadsAreReadOnlyAsFarAsTheyGo) {
    // Five whole records and part of a sixth, which names camera 2.
    AecInfo records[6] = {};
    for (int32_t i = 0; i < 6; ++i) {
        records[i] = {i == 5 ? 2 : 100 + i, 0.0f, 0.0f, 3, 0};
    }
    records[4].cameraId = 1;
    Metadata metadata;
    metadata.VendorBytes(kTagExposureCountList, records, 5 * sizeof(AecInfo) + 12);
    std::vector<uint8_t> block(1803, 0);
    block[1800] = 1;
    metadata.VendorBytes(kTagMlftParameters, block.data(), block.size());
    m_lastResult.m_isEnableMlft = 1;
    EXPECT_EQ(0, Apply(metadata));
    EXPECT_EQ(3, Aec(1).expCount);
    EXPECT_EQ(0, Aec(2).expCount);
    EXPECT_EQ(0u, m_lastResult.m_isEnableMlft);
    EXPECT_TRUE(LoggedExactly("I isEnableMlft: 0"));

    Metadata empty;
    empty.VendorBytes(kTagExposureCountList, records, 0);
    empty.VendorBytes(kTagMlftParameters, block.data(), 0);
    EXPECT_EQ(0, Apply(empty));
    EXPECT_EQ(3, Aec(1).expCount);
}

}  // namespace
}  // namespace LumoraTest
