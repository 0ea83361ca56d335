#include "HostKit/StreamConfig.h"

#include <hardware/gralloc.h>
#include <system/graphics.h>

namespace HostKit {

namespace {

StreamSetup Sized(uint32_t width, uint32_t height, int format, uint32_t usage,
                  const std::string& physicalId) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = format;
    setup.usage = usage;
    setup.physicalId = physicalId;
    return setup;
}

}  // namespace

StreamSetup PreviewStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    return Sized(width, height, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED, GRALLOC_USAGE_HW_TEXTURE,
                 physicalId);
}

StreamSetup VideoStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    return Sized(width, height, HAL_PIXEL_FORMAT_IMPLEMENTATION_DEFINED,
                 GRALLOC_USAGE_HW_VIDEO_ENCODER, physicalId);
}

StreamSetup JpegStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    StreamSetup setup =
        Sized(width, height, HAL_PIXEL_FORMAT_BLOB, GRALLOC_USAGE_SW_READ_OFTEN, physicalId);
    setup.dataSpace = HAL_DATASPACE_V0_JFIF;
    return setup;
}

StreamSetup YuvSnapshotStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    return Sized(width, height, HAL_PIXEL_FORMAT_YCbCr_420_888, GRALLOC_USAGE_SW_READ_OFTEN,
                 physicalId);
}

StreamSetup RawStream(int format, uint32_t width, uint32_t height, const std::string& physicalId,
                      int64_t useCase) {
    StreamSetup setup = Sized(width, height, format, GRALLOC_USAGE_SW_READ_OFTEN, physicalId);
    setup.useCase = useCase;
    return setup;
}

// Room for the entries the library writes back into the session parameters.
StreamConfig::StreamConfig(uint32_t operationMode) : m_sessionParams(64, 16384) {
    m_config.operation_mode = operationMode;
}

camera3_stream_t* StreamConfig::Add(const StreamSetup& setup) {
    camera3_stream_t stream = {};
    stream.stream_type = setup.streamType;
    stream.width = setup.width;
    stream.height = setup.height;
    stream.format = setup.format;
    stream.usage = setup.usage;
    stream.data_space = static_cast<android_dataspace_t>(setup.dataSpace);
    if (setup.hasPhysicalId) {
        m_physicalIds.push_back(setup.physicalId);
        stream.physical_camera_id = m_physicalIds.back().c_str();
    }
    stream.stream_use_case = setup.useCase;
    stream.ext_stream_mode = setup.extMode;
    stream.ext_stream_flags = setup.extFlags;
    stream.dynamic_range_profile = setup.dynamicRangeProfile;
    m_streams.push_back(stream);
    m_pointers.push_back(&m_streams.back());
    return m_pointers.back();
}

void StreamConfig::AddNull() {
    m_pointers.push_back(nullptr);
}

camera3_stream_configuration_t* StreamConfig::Get() {
    m_config.num_streams = static_cast<uint32_t>(m_pointers.size());
    m_config.streams = m_noStreamArray || m_pointers.empty() ? nullptr : m_pointers.data();
    if (m_noStreamArray && m_config.num_streams == 0) {
        m_config.num_streams = 1;
    }
    m_config.session_parameters = m_noSessionParams ? nullptr : m_sessionParams.Get();
    return &m_config;
}

}  // namespace HostKit
