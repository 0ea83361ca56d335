#include "resultappliedcaps/ResultAppliedCapabilities.h"

#include <algorithm>
#include <cstring>

#include "common/Log.h"
#include "common/MetadataRead.h"
#include "common/Platform.h"
#include "common/Status.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

// The MLFT enable switch is the 32-bit value at this offset of the MLFT block.

}  // namespace

ResultAppliedCapabilities::ResultAppliedCapabilities() {
    Initialize();
}

ResultAppliedCapabilities::~ResultAppliedCapabilities() {}

void ResultAppliedCapabilities::Initialize() {
    m_isEnableMlft = 0;
    memset(m_lastReqCameraAECInfo, 0, sizeof(m_lastReqCameraAECInfo));
}

int32_t ResultAppliedCapabilities::UpdateResultAppliedCaps(
    const camera3_capture_result* result, const StaticSupportCapabilities* session) {
    // A partial result with buffers only changes nothing, not even the switch.
    if (result == nullptr || result->result == nullptr) {
        return kStatusOk;
    }
    const camera_metadata_t* metadata = result->result;

    camera_metadata_ro_entry_t entry;
    size_t bytes = 0;
    if (!FindEntry(metadata, VendorTagId(kTagExposureCountList), entry, bytes) ||
        entry.data.u8 == nullptr) {
        UI_LOGE("read ExposureCountList is NULL");
    } else {
        // The list carries eight records; a shorter payload is read only as far
        // as its whole records go.
        const size_t recordCount = std::min<size_t>(bytes / sizeof(AecInfo), kAecInfoCount);
        const LumoraCameraInfo* info = session != nullptr ? session->m_pCameraInfoMap : nullptr;
        const uint32_t cameraCount = RecordCameraCount(info);
        for (uint32_t c = 0; c < cameraCount; ++c) {
            const uint32_t cam = info->cameraEntry[c].physicalCamId;
            if (cam >= kAecInfoCount) {
                continue;  // no record slot for this id
            }
            // A camera without a record in this result keeps the one of an
            // earlier result; of two records for the same camera the first wins.
            for (size_t r = 0; r < recordCount; ++r) {
                AecInfo record;
                memcpy(&record, entry.data.u8 + r * sizeof(AecInfo), sizeof(AecInfo));
                if (record.cameraId == static_cast<int32_t>(cam)) {
                    m_lastReqCameraAECInfo[cam] = record;
                    UI_LOGI("meta result AecInfo[%d:%f:%f:%d]", record.cameraId,
                            static_cast<double>(record.aecValue1),
                            static_cast<double>(record.aecValue2), record.expCount);
                    break;
                }
            }
            const AecInfo& stored = m_lastReqCameraAECInfo[cam];
            UI_LOGV("meta result physicalCamId %d m_lastReqCameraAECInfo[%d:%f:%f:%d]",
                    static_cast<int>(cam), stored.cameraId, static_cast<double>(stored.aecValue1),
                    static_cast<double>(stored.aecValue2), stored.expCount);
        }
    }

    // The switch holds only for the result that carries it.
    m_isEnableMlft = 0;
    if (FindEntry(metadata, VendorTagId(kTagMlftParameters), entry, bytes)) {
        // A block too short to hold the switch counts as switched off.
        uint32_t enable = 0;
        if (bytes >= kMlftSwitchOffset + sizeof(enable)) {
            memcpy(&enable, entry.data.u8 + kMlftSwitchOffset, sizeof(enable));
        }
        m_isEnableMlft = enable;
        UI_LOGI("isEnableMlft: %d", static_cast<int>(m_isEnableMlft));
    } else {
        UI_LOGI("read MlftLTMPars fail");
    }
    return kStatusOk;
}

}  // namespace Lumora
