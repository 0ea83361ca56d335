// Bokeh sessions (the depth effect of two or three physical cameras) and the
// table from physical camera id to sensor name.
#include <CameraHWConfiguration.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <vector>

#include "common/ConfigHelpers.h"
#include "common/Log.h"
#include "common/OperationModes.h"
#include "common/Status.h"
#include "common/StreamPredicates.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

namespace {

constexpr _ConfigKey kSensorNames = Key(EConfigKey::SensorNames);

}  // namespace

uint32_t StaticSupportCapabilities::ConfigSupportCapsBokeh(
    const camera3_stream_configuration* config) {
    m_isBokehMode = 0;
    m_supportCaps.set(CapsNotBokeh);
    if (!IsBokehMode(m_operationMode)) {
        m_bokehStartWithFallback = 0;
        m_bokehTriplePreview = 0;
        return kStatusOk;
    }

    m_isBokehMode = 1;
    m_supportCaps.reset(CapsNotBokeh);
    m_supportCaps.set(CapsBokeh);
    m_supportCaps.set(CapsBokehOperationMode);

    bool startWithFallback = false;
    const _ConfigKey& fallback = Key(EConfigKey::BokehStartWithFallback);
    GetBooleanConfiguration(fallback.group, fallback.key, &startWithFallback);

    const uint32_t numStreams =
        (config != nullptr && config->streams != nullptr) ? config->num_streams : 0;
    UI_LOGI("pStreamConfigsAPI->num_streams %d", numStreams);

    // Distinct physical cameras that receive a preview stream.
    std::set<int> previewCameras;
    for (uint32_t i = 0; i < numStreams; ++i) {
        const camera3_stream_t* stream = config->streams[i];
        if (stream == nullptr) {
            continue;
        }
        const bool physical = HasPhysicalCameraId(*stream);
        const bool preview = IsPreviewYuv(*stream);
        UI_LOGI("[%d]   format:%d [%dx%d]  fwkCamId:%s isPhysical:%d,isPreview:%d", i,
                stream->format, stream->width, stream->height,
                stream->physical_camera_id != nullptr ? stream->physical_camera_id : "", physical,
                preview);
        if (physical && preview) {
            previewCameras.insert(atoi(stream->physical_camera_id));
        }
    }

    switch (previewCameras.size()) {
        case 2:
            m_bokehStartWithFallback = startWithFallback ? 1 : 0;
            m_bokehTriplePreview = 0;
            if (startWithFallback) {
                m_supportCaps.set(CapsBokehStartWithFallback);
            }
            return kStatusOk;
        case 3:
            m_supportCaps.set(CapsBokehStartWithFallback);
            m_supportCaps.set(CapsBokehTriplePreview);
            m_bokehStartWithFallback = 1;
            m_bokehTriplePreview = 1;
            return kStatusOk;
        default:
            // A bokeh session has no way to run on any other number of
            // cameras: stop here rather than stream a broken session.
            UI_LOGE("Unsupport num of physical preview stream %d",
                    static_cast<int>(previewCameras.size()));
            raise(SIGABRT);
            return kStatusUnsupported;
    }
}

void StaticSupportCapabilities::ConfigSensorNameMap() {
    // Rows are: physical camera id, sensor name. A first row of any other
    // length switches the whole table off.
    const uint32_t rows = GetKeyCount(kSensorNames.group);
    if (rows == 0 || GetValuesCount(kSensorNames.group, kSensorNames.firstRow) != 2) {
        return;
    }
    for (uint32_t i = 0; i < rows; ++i) {
        char key[32];
        const RowIndex index(i);
        snprintf(key, sizeof(key), "%s[%s]", kSensorNames.key, index.text);
        const uint32_t count = GetValuesCount(kSensorNames.group, key);
        if (count < 2) {
            continue;
        }
        // An id that does not read as a number stays 0 for this row.
        uint32_t cameraId = 0;
        GetUIntegerConfiguration(kSensorNames.group, key, &cameraId);
        std::vector<char*> values(count, nullptr);
        if (GetStringListConfiguration(kSensorNames.group, key, values.data(), count) !=
                kConfigOk ||
            values[1] == nullptr) {
            continue;
        }
        // Later rows overwrite earlier ones with the same id.
        m_sensorNameMap[cameraId] = values[1];
        UI_LOGI("camid %d sensorname %s", i, values[1]);
    }
}

}  // namespace Lumora
