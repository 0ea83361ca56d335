// Tuning policy tables, the tuning mode query and star-mode AE.
#include <string>

#include "support/SessionTest.h"

namespace LumoraTest {
namespace {

using namespace Lumora;

class TuningPolicyTest : public SessionTest {
protected:
    void Configure(uint32_t operationMode, const std::string& config) {
        LoadConfig(config);
        m_peer->SetOperationMode(operationMode);
        m_peer->ConfigTuning();
    }
    // Tuning mode of a request with these settings (bracket, face beauty level).
    int32_t TuningMode(QueryTuningType type, int32_t bracket, int32_t faceBeauty) {
        Request request(1);
        request.Settings()
            .VendorInt32(kTagApsFeatureType, {1})
            .VendorInt32(kTagBracketMode, {bracket})
            .VendorInt32(kTagFaceBeautyLevel, {faceBeauty});
        Update(request);
        CameraLog();
        return m_record.GetOriginalRequestTuningMode(type);
    }
};

TEST_F(TuningPolicyTest, TablesKeepTheEntriesOfTheSessionModeUpTo64) {
    Build(SingleCamera("wide"));
    std::string config =
        "[OEMFeature2ModeMatch]\nMode[0] = 1, -1, 2, 3, 4, -1, -1\n"
        "Mode[1] = 2, 0x8002, 2, 3, 4, -1, -1\nMode[2] = 3, 0x8001, 9\n";
    Configure(0x8001, config);
    ASSERT_EQ(2u, m_peer->Feature2Count());
    EXPECT_EQ((std::vector<int32_t>{3, 0x8001, 9, -1, -1, -1, -1}),
              std::vector<int32_t>(m_peer->Feature2(1), m_peer->Feature2(1) + 7));
    EXPECT_TRUE(LoggedExactly("I static cfg feature2Mode 1 operationMode -1 apsFeatureType 2"));
    EXPECT_FALSE(LoggedContaining("feature2Mode 2 "));

    // A group whose first row is too short leaves the table as it was.
    Configure(0x8001, "[OEMFeature2ModeMatch]\nMode[0] = 1\n");
    EXPECT_EQ(2u, m_peer->Feature2Count());

    config = "[OEMFeature1ModeMatch]\n";
    for (int i = 0; i < 70; ++i) {
        config += "Mode[" + std::to_string(i) + "] = " + std::to_string(i) + ", -1, -1\n";
    }
    Configure(0x8001, config);
    EXPECT_EQ(64u, m_peer->Feature1Count());
    EXPECT_EQ(63, TuningMode(TypeFeature1Snapshot, 0, 0));  // the last kept entry wins
}

TEST_F(TuningPolicyTest, TuningModeQueryMatchesTheRequestValues) {
    Build(SingleCamera("wide"));
    Configure(0x8001,
              "[OEMFeature1ModeMatch]\n"
              "Mode[0] = 10, 0x8001, 1, -1, 0, 1, -1, -1\n"  // face beauty on
              "Mode[1] = 11, -1, 1, 12, -1, -1, 1, -1\n"     // bracket mode 12
              "Mode[2] = 12, -1, 1, 12, -1, -1, -1, 0\n"     // also bracket 12, later
              "[OEMFeature2ModeMatch]\n"
              "Mode[0] = 20, -1, 1, -1, -1, 0, -1\n"
              "Mode[1] = 21, -1, 1, 5, 0, -1, -1\n");
    EXPECT_EQ(10, TuningMode(TypeFeature1Snapshot, 0, 3));
    EXPECT_EQ(-1, TuningMode(TypeFeature1Snapshot, 0, 0));
    Request request(2);
    request.Settings().VendorInt32(kTagBracketMode, {12});
    Update(request);
    CameraLog();
    EXPECT_EQ(12, m_record.GetOriginalRequestTuningMode(TypeFeature1Snapshot));
    EXPECT_EQ((std::vector<std::string>{"I Query TuningMode TypeFeature1Snapshot 11",
                                        "I Query TuningMode TypeFeature1Snapshot 12"}),
              CameraLog());
    // A feature-2 entry with a field 5 other than -1 never matches.
    EXPECT_EQ(-1, TuningMode(TypeFeature2Snapshot, 0, 0));
    EXPECT_EQ(21, TuningMode(TypeFeature2Snapshot, 5, 0));
    for (uint32_t type : {0u, 3u}) {
        EXPECT_EQ(-1, m_record.GetOriginalRequestTuningMode(static_cast<QueryTuningType>(type)));
        EXPECT_TRUE(LoggedExactly("E Unsupport Query Tuning Type " + std::to_string(type)));
    }
}

// Rows of 0 in the bracket, camera flag and bracket-12 fields match a record
// that no request has set, and a camera without a record has flag 0.
TEST_F(TuningPolicyTest, RowsOfZeroMatchWhatNoRequestSet) {
    CameraSetup camera = SingleCamera("wide");
    camera.hasRecord = false;
    Build(camera);
    const struct {
        const char* row;
        int32_t bracket;  // of a request before the query; -1 for none
        int32_t want;
    } cases[] = {
        {"30, -1, -1, 0, -1, -1, -1, -1", -1, 30}, {"31, -1, -1, -1, 0, -1, -1, -1", -1, 31},
        {"32, -1, -1, -1, -1, -1, 0, -1", 5, 32},  {"33, -1, 1, 5, -1, -1, 1, -1", 5, -1},
        {"34, -1, 1, 12, 0, -1, 1, -1", 12, 34},   {"35, -1", 5, 35},  // two values are a row
        {"36, -1\nMode[2] = 37, -1", 5, 36},  // two keys: rows 0 and 1 only
    };
    for (const auto& c : cases) {
        Configure(0x8001, std::string("[OEMFeature1ModeMatch]\nMode[0] = ") + c.row + "\n");
        if (c.bracket < 0) {
            Request request(1);
            request.SensorModes({0});
            Update(request);
            EXPECT_EQ(c.want, m_record.GetOriginalRequestTuningMode(TypeFeature1Snapshot)) << c.row;
        } else {
            EXPECT_EQ(c.want, TuningMode(TypeFeature1Snapshot, c.bracket, 0)) << c.row;
        }
    }
}

// Touch-to-track rows: the operation mode and a mask of physical camera ids.
TEST_F(TuningPolicyTest, TouchToTrackByModeAndCameraMask) {
    const struct {
        const char* rows;
        bool logical, camera0, camera1;
    } cases[] = {
        {"Mode[0] = 0x8009, 0x2", true, false, true},
        {"Mode[0] = 0x8001, 0x3\nMode[1] = 0x8009, 0x1", true, true, false},
        {"Mode[0] = 0x8009, 0x1, 0", false, false, false},  // rows of two values only
        {"Mode[0] = 0x8009, x", false, false, false},
    };
    for (const auto& c : cases) {
        Build(MultiCamera(2, 0, 0));
        Configure(0x8009, std::string("[AIAFTouch2track]\n") + c.rows + "\n");
        EXPECT_EQ(c.logical,
                  m_session->IsSessionSupportCaps(CapsAIAFTouch2Track, TypeLogicalCamera))
            << c.rows;
        EXPECT_EQ(c.camera0, m_session->IsSessionSupportCaps(CapsAIAFTouch2Track, QueryCapsType(0)))
            << c.rows;
        EXPECT_EQ(c.camera1, m_session->IsSessionSupportCaps(CapsAIAFTouch2Track, QueryCapsType(1)))
            << c.rows;
    }
}

TEST_F(TuningPolicyTest, StarModeOverrideOnlyInItsMode) {
    Build(SingleCamera("wide"));
    const std::string config = "[StarMode]\nneedOverrideAE = true\nAEMode = 2\nsensitiviy = 800\n";
    Configure(0x8001, config);
    EXPECT_FALSE(m_session->IsSessionSupportCaps(CapsStarModeOverrideAE, TypeLogicalCamera));
    Configure(0x80A8, config);
    EXPECT_TRUE(m_session->IsSessionSupportCaps(CapsStarModeOverrideAE, TypeLogicalCamera));
    const StarModeAEInfo* info = m_session->GetStarModeAEInfo();
    EXPECT_EQ(2, info->aeMode);
    EXPECT_EQ(800, info->sensitivity);
    EXPECT_EQ(0, info->expTime);
}

}  // namespace
}  // namespace LumoraTest
