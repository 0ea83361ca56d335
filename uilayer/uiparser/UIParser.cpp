#include "uiparser/UIParser.h"

#include <dlfcn.h>

#include "common/Log.h"
#include "common/Platform.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"
#include "uiparser/RDCMap.h"

namespace Lumora {

namespace {
constexpr unsigned int kRequestRingCapacity = 256;
}  // namespace

std::map<int, std::shared_ptr<IuiLayer>> UIParser::m_uiParserMap;
std::mutex UIParser::m_mapMutex;
uint32_t UIParser::m_allCameraNumbers = 0;
camera_info* UIParser::m_pAllCameraInfo = nullptr;

void IuiLayer::Init(unsigned int allCameraNumbers, camera_info* pAllCameraInfo) {
    UIParser::Init(allCameraNumbers, pAllCameraInfo);
}

std::shared_ptr<IuiLayer> IuiLayer::Get(unsigned int cameraId) {
    return UIParser::Get(cameraId);
}

std::shared_ptr<IuiLayer> UIParser::Get(unsigned int cameraId) {
    std::lock_guard<std::mutex> lock(m_mapMutex);
    std::shared_ptr<IuiLayer>& entry = m_uiParserMap[static_cast<int>(cameraId)];
    if (!entry) {
        entry = std::make_shared<UIParser>(cameraId);
    }
    return entry;
}

void UIParser::Init(unsigned int allCameraNumbers, camera_info* pAllCameraInfo) {
    std::lock_guard<std::mutex> lock(m_mapMutex);
    // Parsers still held by callers stay alive until they drop them.
    for (auto& entry : m_uiParserMap) {
        entry.second.reset();
    }
    m_uiParserMap.clear();
    m_allCameraNumbers = allCameraNumbers;
    m_pAllCameraInfo = pAllCameraInfo;

    // The handle is kept for the life of the process.
    void* handle = OpenSiblingLibrary();
    if (handle != nullptr) {
        // Sessions of parsers that callers still hold read the pointer without
        // the lock: it is written only when the lookup really changes.
        auto* lookup =
            reinterpret_cast<uint32_t (*)(uint32_t)>(dlsym(handle, "LumoraGetVendorTagId"));
        if (lookup != GetVendorTagId) {
            GetVendorTagId = lookup;
        }
    }
    if ((handle == nullptr && GetVendorTagId == nullptr) ||
        (handle != nullptr && GetVendorTagId == nullptr)) {
        UI_LOGE("dlsym LumoraGetVendorTagId fail!");
    }
}

UIParser::UIParser(unsigned int cameraId)
    : m_pStaticCaps(std::make_unique<StaticSupportCapabilities>(cameraId, m_allCameraNumbers,
                                                                m_pAllCameraInfo)),
      m_pRDCMap(std::make_unique<RDCMap>(kRequestRingCapacity, m_pStaticCaps.get())) {}

// The session object goes first, then the ring, which never reads the session
// while it is destroyed.
UIParser::~UIParser() {
    m_pStaticCaps.reset();
    m_pRDCMap.reset();
}

bool UIParser::IsSessionSupportCaps(DesiredSupportCaps caps, QueryCapsType type) {
    return m_pStaticCaps->IsSessionSupportCaps(caps, type);
}

std::vector<_UIStreamInfo>* UIParser::GetStreamByStreamType(StreamType type) {
    return m_pStaticCaps->GetStreamByStreamType(type);
}

std::vector<_UIStreamInfo>* UIParser::GetStreamByStreamType(unsigned int frameNumber,
                                                            StreamType type) {
    // A frame the ring does not hold has no list.
    RequestDesiredCapabilities* record = m_pRDCMap->GetRDC(frameNumber);
    return record != nullptr ? record->GetStreamByStreamType(type) : nullptr;
}

int UIParser::GetFwkCameraIdByCameraIndex(unsigned int cameraIndex) {
    return m_pStaticCaps->GetFwkCameraIdByCameraIndex(cameraIndex);
}

int UIParser::GetFwkCameraIdByStream(camera3_stream* stream) {
    return m_pStaticCaps->GetFwkCameraIdByStream(stream);
}

int UIParser::GetCameraIndexByStream(camera3_stream* stream) {
    return m_pStaticCaps->GetCameraIndexByStream(stream);
}

StreamType UIParser::GetStreamTypeByStream(camera3_stream* stream) {
    return m_pStaticCaps->GetStreamTypeByStream(stream);
}

bool UIParser::IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                                    QueryCapsType type) {
    return m_pRDCMap->IsRequestSupportCaps(frameNumber, caps, type);
}

_CapsBitset UIParser::GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type) {
    return m_pRDCMap->GetRequestSupportCaps(frameNumber, type);
}

unsigned int UIParser::GetOriginalRequestTuningMode(unsigned int frameNumber,
                                                    QueryTuningType type) {
    return m_pRDCMap->GetOriginalRequestTuningMode(frameNumber, type);
}

int UIParser::GetSensorModeIndexByCaps(_CapsBitset caps, QueryCapsType type,
                                       signed char& modeIndex) {
    return m_pStaticCaps->GetSensorModeIndexByCaps(caps, type, modeIndex);
}

int UIParser::ParseStaticCapabilities(camera3_stream_configuration* config) {
    m_pRDCMap->GetLastResult().Initialize();
    return m_pStaticCaps->ParseStaticCapabilities(config);
}

int UIParser::ParseStreamCapabilities(camera3_stream_configuration* config) {
    return m_pStaticCaps->ParseStreamCapabilities(config);
}

int UIParser::UpdatePerRequestCaps(const camera3_capture_request* request) {
    return m_pRDCMap->UpdatePerRequestCaps(request);
}

int UIParser::UpdateResultAppliedCaps(const camera3_capture_result* result) {
    return m_pRDCMap->UpdateResultAppliedCaps(result);
}

const char* UIParser::GetPipelineName() {
    return m_pStaticCaps->GetPipelineName();
}

char* UIParser::GetPackageName() {
    return m_pStaticCaps->GetPackageName();
}

char* UIParser::GetActivityName() {
    return m_pStaticCaps->GetActivityName();
}

bool UIParser::IsDisableAePrecaptureTriggerForSnapshot() const {
    return m_pStaticCaps->IsDisableAePrecaptureTriggerForSnapshot();
}

float UIParser::ProcessRemapZoomRatio(char* value, int size) {
    return m_pStaticCaps->ProcessRemapZoomRatio(value, size);
}

char* UIParser::GetCameraMode() {
    return m_pStaticCaps->GetCameraMode();
}

unsigned int UIParser::GetVideoStabMode() {
    return m_pStaticCaps->GetVideoStabMode();
}

_SensorDimension* UIParser::GetSensorDimension() {
    return m_pStaticCaps->GetSensorDimension();
}

StarModeAEInfo* UIParser::GetStarModeAEInfo() {
    return m_pStaticCaps->GetStarModeAEInfo();
}

int UIParser::GetWarmStartStateByCaps(unsigned int physicalCamId, unsigned int& useWarmStart,
                                      int& dolState) {
    return m_pStaticCaps->GetWarmStartStateByCaps(physicalCamId, useWarmStart, dolState);
}

int UIParser::GetStaticCapsMask(QueryCapsType type, _CapsBitset& mask) {
    return m_pStaticCaps->GetStaticCapsMask(type, mask);
}

_SatStaticCaps* UIParser::GetSatStaticCaps() {
    return m_pStaticCaps->GetSatStaticCaps();
}

}  // namespace Lumora
