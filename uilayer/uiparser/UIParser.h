// The parser of one framework camera id: owns its session object and its
// request ring and forwards every query of IuiLayer to one of them. A process
// wide registry hands out one shared parser per camera id.
#ifndef LUMORA_UIPARSER_H
#define LUMORA_UIPARSER_H

#include <hardware/camera_common.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "IuiLayer.h"

namespace Lumora {

class StaticSupportCapabilities;
class RDCMap;

class UIParser : public IuiLayer {
public:
    explicit UIParser(unsigned int cameraId);
    ~UIParser() override;
    UIParser(const UIParser&) = delete;
    UIParser& operator=(const UIParser&) = delete;

    static std::shared_ptr<IuiLayer> Get(unsigned int cameraId);
    static void Init(unsigned int allCameraNumbers, camera_info* pAllCameraInfo);

    bool IsSessionSupportCaps(DesiredSupportCaps caps, QueryCapsType type) override;
    std::vector<_UIStreamInfo>* GetStreamByStreamType(StreamType type) override;
    std::vector<_UIStreamInfo>* GetStreamByStreamType(unsigned int frameNumber,
                                                      StreamType type) override;
    int GetFwkCameraIdByCameraIndex(unsigned int cameraIndex) override;
    int GetFwkCameraIdByStream(camera3_stream* stream) override;
    int GetCameraIndexByStream(camera3_stream* stream) override;
    StreamType GetStreamTypeByStream(camera3_stream* stream) override;
    bool IsRequestSupportCaps(unsigned int frameNumber, DesiredSupportCaps caps,
                              QueryCapsType type) override;
    _CapsBitset GetRequestSupportCaps(unsigned int frameNumber, QueryCapsType type) override;
    unsigned int GetOriginalRequestTuningMode(unsigned int frameNumber,
                                              QueryTuningType type) override;
    int GetSensorModeIndexByCaps(_CapsBitset caps, QueryCapsType type,
                                 signed char& modeIndex) override;
    int ParseStaticCapabilities(camera3_stream_configuration* config) override;
    int ParseStreamCapabilities(camera3_stream_configuration* config) override;
    int UpdatePerRequestCaps(const camera3_capture_request* request) override;
    int UpdateResultAppliedCaps(const camera3_capture_result* result) override;
    const char* GetPipelineName() override;
    char* GetPackageName() override;
    char* GetActivityName() override;
    bool IsDisableAePrecaptureTriggerForSnapshot() const override;
    float ProcessRemapZoomRatio(char* value, int size) override;
    char* GetCameraMode() override;
    unsigned int GetVideoStabMode() override;
    _SensorDimension* GetSensorDimension() override;
    StarModeAEInfo* GetStarModeAEInfo() override;
    int GetWarmStartStateByCaps(unsigned int physicalCamId, unsigned int& useWarmStart,
                                int& dolState) override;
    int GetStaticCapsMask(QueryCapsType type, _CapsBitset& mask) override;
    _SatStaticCaps* GetSatStaticCaps() override;

private:
    // The session object is built first: the ring keeps a pointer to it.
    std::unique_ptr<StaticSupportCapabilities> m_pStaticCaps;
    std::unique_ptr<RDCMap> m_pRDCMap;

    static std::map<int, std::shared_ptr<IuiLayer>> m_uiParserMap;
    static std::mutex m_mapMutex;
    static uint32_t m_allCameraNumbers;
    static camera_info* m_pAllCameraInfo;
};

}  // namespace Lumora

#endif  // LUMORA_UIPARSER_H
