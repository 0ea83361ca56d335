#include "support/TestDevice.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstring>

namespace LumoraTest {

namespace {

constexpr uint32_t kTagCameraInfo = 5;
constexpr uint32_t kTagSensorModeList = 49;
constexpr uint32_t kTagExposureCountList = 156;
constexpr uint32_t kTagMlftParameters = 175;
constexpr size_t kMlftBlockSize = 1804;

int ReplaceOrAdd(camera_metadata_t* metadata, uint32_t tag, const void* data, size_t count) {
    camera_metadata_entry_t entry = {};
    if (find_camera_metadata_entry(metadata, tag, &entry) == 0) {
        return update_camera_metadata_entry(metadata, entry.index, data, count, nullptr);
    }
    return add_camera_metadata_entry(metadata, tag, data, count);
}

}  // namespace

// ---------------- Metadata ----------------

Metadata::Metadata(size_t entryCapacity, size_t dataCapacity)
    : m_metadata(allocate_camera_metadata(entryCapacity, dataCapacity)) {}

Metadata::~Metadata() {
    free_camera_metadata(m_metadata);
}

Metadata& Metadata::Raw(uint32_t tag, const void* data, size_t count) {
    EXPECT_EQ(0, ReplaceOrAdd(m_metadata, tag, data, count)) << "tag 0x" << std::hex << tag;
    return *this;
}

Metadata& Metadata::VendorString(uint32_t index, const std::string& text) {
    return Raw(GetVendorTagId(index), text.data(), text.size());
}

Metadata& Metadata::VendorByte(uint32_t index, uint8_t value) {
    return Raw(GetVendorTagId(index), &value, 1);
}

Metadata& Metadata::VendorBytes(uint32_t index, const void* data, size_t size) {
    return Raw(GetVendorTagId(index), data, size);
}

Metadata& Metadata::VendorInt32(uint32_t index, const std::vector<int32_t>& values) {
    return Raw(GetVendorTagId(index), values.data(), values.size());
}

Metadata& Metadata::VendorFloat(uint32_t index, float value) {
    return Raw(GetVendorTagId(index), &value, 1);
}

Metadata& Metadata::Byte(uint32_t tag, uint8_t value) {
    return Raw(tag, &value, 1);
}

Metadata& Metadata::Int32(uint32_t tag, const std::vector<int32_t>& values) {
    return Raw(tag, values.data(), values.size());
}

Metadata& Metadata::Float(uint32_t tag, float value) {
    return Raw(tag, &value, 1);
}

bool Metadata::Has(uint32_t tag) const {
    camera_metadata_ro_entry_t entry = {};
    return find_camera_metadata_ro_entry(m_metadata, tag, &entry) == 0;
}

int32_t Metadata::FirstInt32(uint32_t tag) const {
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(m_metadata, tag, &entry) != 0 || entry.count == 0) {
        return -1;
    }
    return entry.data.i32[0];
}

int32_t Metadata::FirstByte(uint32_t tag) const {
    camera_metadata_ro_entry_t entry = {};
    if (find_camera_metadata_ro_entry(m_metadata, tag, &entry) != 0 || entry.count == 0) {
        return -1;
    }
    return entry.data.u8[0];
}

// ---------------- TestDevice ----------------

TestDevice::~TestDevice() {
    for (camera_metadata_t* metadata : m_characteristics) {
        free_camera_metadata(metadata);
    }
}

void TestDevice::AddCamera(const CameraSetup& setup) {
    m_setups.push_back(setup);
    m_hasRecord.push_back(true);
}

void TestDevice::AddCameraWithoutRecord() {
    m_setups.push_back(CameraSetup());
    m_hasRecord.push_back(false);
}

void TestDevice::Init() {
    // Init resolves GetVendorTagId, which building the records needs.
    Lumora::IuiLayer::Init(0, nullptr);
    m_table.assign(m_setups.size(), camera_info{});
    for (size_t i = 0; i < m_setups.size(); ++i) {
        const CameraSetup& setup = m_setups[i];
        camera_metadata_t* metadata = allocate_camera_metadata(8, sizeof(LumoraCameraInfo) + 64);
        m_characteristics.push_back(metadata);
        m_table[i].static_camera_characteristics = metadata;
        if (!m_hasRecord[i]) {
            continue;
        }
        LumoraCameraInfo record = {};
        record.logicalCamId = setup.logicalCamId;
        record.frameworkId = setup.frameworkId;
        record.numPhysicalCameras = static_cast<uint32_t>(setup.physicalCameras.size());
        for (size_t k = 0; k < setup.physicalCameras.size() && k < LUMORA_MAX_PHYSICAL_CAMERAS;
             ++k) {
            const PhysicalCamera& camera = setup.physicalCameras[k];
            record.cameraEntry[k].logicalCamId = camera.logicalCamId;
            record.cameraEntry[k].frameworkId = camera.frameworkId;
            record.cameraEntry[k].physicalCamId = camera.physicalCamId;
            record.cameraEntry[k].isPrimary = camera.isPrimary ? 1 : 0;
        }
        record.type = setup.type;
        record.fullArrayWidth = setup.fullArrayWidth;
        record.fullArrayHeight = setup.fullArrayHeight;
        record.numSensorModes = static_cast<uint32_t>(
            std::min<size_t>(setup.sensorModeFlags.size(), LUMORA_MAX_SENSOR_MODES));
        for (uint32_t m = 0; m < record.numSensorModes; ++m) {
            record.sensorModes[m].flags = setup.sensorModeFlags[m];
        }
        m_names.push_back(setup.sensorName);
        record.sensorName = m_names.back().c_str();
        EXPECT_EQ(0, add_camera_metadata_entry(metadata, GetVendorTagId(kTagCameraInfo), &record,
                                               sizeof(record)));
    }
    Lumora::IuiLayer::Init(static_cast<unsigned int>(m_table.size()), m_table.data());
}

LumoraCameraInfo* TestDevice::Record(size_t index) {
    camera_metadata_ro_entry_t entry = {};
    if (index >= m_table.size() ||
        find_camera_metadata_ro_entry(m_table[index].static_camera_characteristics,
                                      GetVendorTagId(kTagCameraInfo), &entry) != 0) {
        return nullptr;
    }
    return reinterpret_cast<LumoraCameraInfo*>(const_cast<uint8_t*>(entry.data.u8));
}

CameraSetup TestDevice::SingleCamera(const std::string& sensorName, uint32_t frameworkId,
                                     uint32_t logicalCamId) {
    CameraSetup setup;
    setup.logicalCamId = logicalCamId;
    setup.frameworkId = frameworkId;
    setup.sensorName = sensorName;
    setup.physicalCameras.push_back({static_cast<int32_t>(logicalCamId),
                                     static_cast<int32_t>(frameworkId), logicalCamId, true});
    return setup;
}

CameraSetup TestDevice::MultiCamera(uint32_t count, uint32_t frameworkId, uint32_t logicalCamId) {
    CameraSetup setup;
    setup.logicalCamId = logicalCamId;
    setup.frameworkId = frameworkId;
    for (uint32_t k = 0; k < count; ++k) {
        setup.physicalCameras.push_back(
            {static_cast<int32_t>(k), static_cast<int32_t>(k), k, k == 0});
    }
    return setup;
}

// ---------------- Streams ----------------

StreamSetup PreviewStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = 0x22;
    setup.usage = 0x100;
    setup.physicalId = physicalId;
    return setup;
}

StreamSetup VideoStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = 0x22;
    setup.usage = 0x10000;
    setup.physicalId = physicalId;
    return setup;
}

StreamSetup JpegStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = 0x21;
    setup.usage = 0x3;
    setup.dataSpace = 0x8C20000;
    setup.physicalId = physicalId;
    return setup;
}

StreamSetup YuvSnapshotStream(uint32_t width, uint32_t height, const std::string& physicalId) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = 0x23;
    setup.usage = 0x3;
    setup.physicalId = physicalId;
    return setup;
}

StreamSetup RawStream(int format, uint32_t width, uint32_t height, const std::string& physicalId,
                      int64_t useCase) {
    StreamSetup setup;
    setup.width = width;
    setup.height = height;
    setup.format = format;
    setup.usage = 0x3;
    setup.physicalId = physicalId;
    setup.useCase = useCase;
    return setup;
}

StreamConfig::StreamConfig(uint32_t operationMode) {
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
    m_physicalIds.push_back(setup.physicalId);
    stream.physical_camera_id = setup.nullPhysicalId ? nullptr : m_physicalIds.back().c_str();
    stream.stream_use_case = setup.useCase;
    stream.ext_stream_mode = setup.extMode;
    stream.dynamic_range_profile = setup.dynamicRangeProfile;
    m_streams.push_back(stream);
    m_pointers.push_back(&m_streams.back());
    return m_pointers.back();
}

camera3_stream_configuration_t* StreamConfig::Get() {
    m_config.num_streams = static_cast<uint32_t>(m_pointers.size());
    m_config.streams = m_pointers.data();
    m_config.session_parameters = m_noSessionParams ? nullptr : m_sessionParams.Get();
    return &m_config;
}

// ---------------- Requests and results ----------------

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
    Settings().VendorInt32(kTagSensorModeList, modes);
    return *this;
}

Request& Request::ZoomRatio(float ratio) {
    Settings().Float(ANDROID_CONTROL_ZOOM_RATIO, ratio);
    return *this;
}

const camera3_capture_request_t* Request::Get() {
    m_request.settings = m_settings ? m_settings->Get() : nullptr;
    m_request.num_output_buffers = static_cast<uint32_t>(m_buffers.size());
    m_request.output_buffers = m_buffers.empty() ? nullptr : m_buffers.data();
    return &m_request;
}

Result::Result(uint32_t frameNumber, bool withMetadata) {
    m_result.frame_number = frameNumber;
    if (withMetadata) {
        m_metadata = std::make_unique<Metadata>();
    }
}

Result& Result::Aec(int32_t cameraId, int32_t expCount, float value1, float value2) {
    m_aec.push_back({cameraId, value1, value2, expCount, 0});
    return *this;
}

Result& Result::Mlft(uint32_t enable) {
    m_hasMlft = true;
    m_mlft = enable;
    return *this;
}

const camera3_capture_result_t* Result::Get() {
    if (m_metadata) {
        if (!m_aec.empty()) {
            // The list always carries eight records; unused ones belong to no camera.
            std::vector<AecRecord> records(8, AecRecord{-1, 0.0f, 0.0f, 0, 0});
            std::copy_n(m_aec.begin(), std::min<size_t>(m_aec.size(), 8), records.begin());
            m_metadata->VendorBytes(kTagExposureCountList, records.data(),
                                    records.size() * sizeof(AecRecord));
        }
        if (m_hasMlft) {
            std::vector<uint8_t> block(kMlftBlockSize, 0);
            memcpy(block.data() + 1800, &m_mlft, sizeof(m_mlft));
            m_metadata->VendorBytes(kTagMlftParameters, block.data(), block.size());
        }
    }
    m_result.result = m_metadata ? m_metadata->Get() : nullptr;
    return &m_result;
}

// ---------------- Fixture ----------------

void UiLayerTest::SetUp() {
    HostPlatform::ResetProperties();
    HostPlatform::SetLogSwitches(true, true, true, true, true);
    ASSERT_EQ(0, HostPlatform::LoadConfiguration(""));
    unsetenv("UILAYER_DEVICE_ROOT");
    Drain();
    m_pendingLog.clear();
}

void UiLayerTest::TearDown() {
    HostPlatform::TakeAndroidLog();
    HostPlatform::TakeCameraLog();
}

void UiLayerTest::LoadConfig(const std::string& text) {
    ASSERT_EQ(0, HostPlatform::LoadConfiguration(text.c_str())) << "configuration refused";
}

void UiLayerTest::Drain() {
    for (std::string& line : HostPlatform::TakeCameraLog()) {
        m_pendingLog.push_back(std::move(line));
    }
    HostPlatform::TakeAndroidLog();
}

std::vector<std::string> UiLayerTest::CameraLog() {
    Drain();
    std::vector<std::string> lines;
    lines.swap(m_pendingLog);
    return lines;
}

bool UiLayerTest::LoggedExactly(const std::string& line) {
    Drain();
    return std::find(m_pendingLog.begin(), m_pendingLog.end(), line) != m_pendingLog.end();
}

bool UiLayerTest::LoggedContaining(const std::string& text) {
    Drain();
    return std::any_of(m_pendingLog.begin(), m_pendingLog.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

}  // namespace LumoraTest
