// Preview pipeline of a session: the name of the pipeline the camera layer
// builds for preview, and whether the low-latency and mip-map preview paths
// are on.
#include <CameraHWConfiguration.h>

#include <algorithm>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kLowLatency = Key(EConfigKey::SupportLowLatency);
constexpr _ConfigKey kMipmap = Key(EConfigKey::EnableMipmap);
constexpr _ConfigKey kPipelines = Key(EConfigKey::PreviewPipelines);
constexpr const char* kSingleCameraDefaultPipeline = "TavroSingleDefault";
constexpr const char* kMultiCameraDefaultPipeline = "TavroMultiDefault";

}  // namespace

uint32_t StaticSupportCapabilities::SelectLowlatencyPipeline(const camera3_stream_configuration*) {
    bool isSupportLowLatency = false;
    bool isEnableMipmap = false;
    const int lowLatencyStatus =
        GetBooleanConfiguration(kLowLatency.group, kLowLatency.key, &isSupportLowLatency);
    const int mipmapStatus = GetBooleanConfiguration(kMipmap.group, kMipmap.key, &isEnableMipmap);

    m_supportCaps.reset(CapsLowLatencyPipeline);
    // The mip-map preview path serves preview-only sessions.
    if (isSupportLowLatency && isEnableMipmap && !m_supportCaps.test(CapsStreamVideo)) {
        m_supportCaps.set(CapsMipmapPreview);
    }

    m_pipelineName = nullptr;
    const uint32_t rowCount = GetKeyCount(kPipelines.group);
    const uint32_t valueCount = GetValuesCount(kPipelines.group, kPipelines.firstRow);
    UI_LOGI("opmode %d, logicalCamId %d", m_operationMode, m_logicalCamId);

    // A row: operation mode, logical camera id (255: any), an optional
    // low-latency flag and other integers, then the pipeline name last. A row
    // of only a mode and a name has no camera id: it serves every camera.
    if (rowCount > 0 && valueCount >= 2) {
        const uint32_t intCount = valueCount - 1;
        std::vector<uint32_t> values(intCount < 3 ? 3 : intCount);
        std::vector<char*> names(valueCount);
        for (uint32_t row = 0; row < rowCount; ++row) {
            const RowIndex index(row);
            std::fill(values.begin(), values.end(), 0u);
            if (intCount < 2) {
                values[1] = kPipelineAnyLogicalCamera;
            }
            // A row that does not read as integers matches nothing.
            if (GetLocaleUIntegerListConfiguration(kPipelines.group, kPipelines.key, index.text,
                                                   values.data(), intCount) != kConfigOk) {
                continue;
            }
            if (values[0] != m_operationMode ||
                (values[1] != kPipelineAnyLogicalCamera &&
                 values[1] != static_cast<uint32_t>(m_logicalCamId))) {
                continue;
            }
            std::fill(names.begin(), names.end(), nullptr);
            // A row shorter than the first one has no name at the last position:
            // it keeps the earlier choice, like a row that cannot be read.
            if (GetLocaleStringListConfiguration(kPipelines.group, kPipelines.key, index.text,
                                                 names.data(), valueCount) != kConfigOk ||
                names[valueCount - 1] == nullptr) {
                continue;
            }
            // Every row is examined: the last matching row names the pipeline,
            // while the low-latency bit, once set by a row, stays set.
            m_pipelineName = names[valueCount - 1];
            if (intCount > kPipelineLowLatencyValue && values[kPipelineLowLatencyValue] != 0 &&
                isSupportLowLatency) {
                m_supportCaps.set(CapsLowLatencyPipeline);
            }
            UI_LOGI("select pipeline name %s", m_pipelineName);
        }
    }

    if (m_pipelineName == nullptr) {
        m_pipelineName =
            m_numPhysicalCameras < 2 ? kSingleCameraDefaultPipeline : kMultiCameraDefaultPipeline;
        UI_LOGI("select pipeline name %s", m_pipelineName);
    }
    return static_cast<uint32_t>(lowLatencyStatus | mipmapStatus);
}

}  // namespace Lumora
