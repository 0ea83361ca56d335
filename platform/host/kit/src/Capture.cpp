#include "HostKit/Capture.h"

#include <algorithm>
#include <cstring>

namespace HostKit {

Request::Request(uint32_t frameNumber) {
    m_request.frame_number = frameNumber;
}

Metadata& Request::Settings() {
    if (!m_settings) {
        m_settings = std::make_unique<Metadata>();
    }
    return *m_settings;
}

Request& Request::Buffer(camera3_stream_t* stream) {
    camera3_stream_buffer_t buffer = {};
    buffer.stream = stream;
    m_buffers.push_back(buffer);
    return *this;
}

Request& Request::SensorModes(const std::vector<int32_t>& modes) {
    Settings().VendorInt32(LibraryFacts().sensorModeListTag, modes);
    return *this;
}

Request& Request::ZoomRatio(float ratio) {
    Settings().Float(ANDROID_CONTROL_ZOOM_RATIO, ratio);
    return *this;
}

Request& Request::WithoutBufferArray() {
    m_noBufferArray = true;
    return *this;
}

camera3_capture_request_t* Request::Get() {
    m_request.settings = m_settings ? m_settings->Get() : nullptr;
    m_request.num_output_buffers = static_cast<uint32_t>(m_buffers.size());
    m_request.output_buffers = m_noBufferArray || m_buffers.empty() ? nullptr : m_buffers.data();
    return &m_request;
}

Result::Result(uint32_t frameNumber, bool withMetadata) {
    m_result.frame_number = frameNumber;
    if (withMetadata) {
        m_metadata = std::make_unique<Metadata>();
    }
}

Result& Result::Aec(int32_t cameraId, int32_t expCount, float value1, float value2,
                    uint32_t extra) {
    m_aec.push_back({cameraId, value1, value2, expCount, extra});
    return AecList(m_aec);
}

Result& Result::AecList(const std::vector<AecRecord>& records) {
    if (!m_metadata) {
        return *this;
    }
    const size_t count = LibraryFacts().aecRecordCount;
    std::vector<AecRecord> list(count, AecRecord{-1, 0.0f, 0.0f, 0, 0});
    std::copy_n(records.begin(), std::min(records.size(), count), list.begin());
    m_metadata->VendorBytes(LibraryFacts().exposureCountListTag, list.data(),
                            list.size() * sizeof(AecRecord));
    return *this;
}

Result& Result::Mlft(uint32_t enable, size_t size) {
    if (!m_metadata) {
        return *this;
    }
    const size_t offset = LibraryFacts().mlftSwitchOffset;
    std::vector<uint8_t> block(size, 0);
    if (size >= offset + sizeof(enable)) {
        memcpy(block.data() + offset, &enable, sizeof(enable));
    }
    m_metadata->VendorBytes(LibraryFacts().mlftParametersTag, block.data(), block.size());
    return *this;
}

Result& Result::Mlft(uint32_t enable) {
    return Mlft(enable, LibraryFacts().mlftSwitchOffset + sizeof(enable));
}

camera3_capture_result_t* Result::Get() {
    m_result.result = m_metadata ? m_metadata->Get() : nullptr;
    return &m_result;
}

}  // namespace HostKit
