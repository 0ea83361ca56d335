#include "Device.h"

#include <stdexcept>
#include <utility>

#include "IuiLayer.h"

namespace UilayerSim {

namespace {
constexpr uint32_t kCameraInfoTag = 5;
}  // namespace

MetadataBuffer::MetadataBuffer(size_t entryCapacity, size_t dataCapacity)
    : m_metadata(allocate_camera_metadata(entryCapacity, dataCapacity)) {
    if (m_metadata == nullptr) {
        throw std::runtime_error("cannot allocate camera metadata");
    }
}

MetadataBuffer::~MetadataBuffer() {
    if (m_metadata != nullptr) {
        free_camera_metadata(m_metadata);
    }
}

MetadataBuffer::MetadataBuffer(MetadataBuffer&& other) noexcept
    : m_metadata(std::exchange(other.m_metadata, nullptr)) {}

MetadataBuffer& MetadataBuffer::operator=(MetadataBuffer&& other) noexcept {
    if (this != &other) {
        if (m_metadata != nullptr) {
            free_camera_metadata(m_metadata);
        }
        m_metadata = std::exchange(other.m_metadata, nullptr);
    }
    return *this;
}

void MetadataBuffer::Add(uint32_t tagId, const void* data, size_t count, const std::string& what) {
    if (add_camera_metadata_entry(m_metadata, tagId, data, count) != 0) {
        throw std::runtime_error("the metadata store refuses " + what);
    }
}

void MetadataBuffer::Add(const TagValue& value) {
    const std::string what =
        (value.vendor ? "vendor tag " + std::to_string(value.tag) : StandardTagName(value.tag)) +
        " (line " + std::to_string(value.line) + ")";
    const uint32_t id = value.vendor ? VendorTag(value.tag) : value.tag;
    Add(id, value.Data(), value.Count(), what);
}

MetadataBuffer MetadataBuffer::WithTags(const std::vector<TagValue>& tags, size_t spareEntries,
                                        size_t spareData) {
    size_t data = spareData;
    for (const TagValue& tag : tags) {
        data += tag.Count() * 8 + 8;
    }
    MetadataBuffer buffer(tags.size() + spareEntries, data);
    for (const TagValue& tag : tags) {
        buffer.Add(tag);
    }
    return buffer;
}

uint32_t VendorTag(uint32_t index) {
    const uint32_t id = GetVendorTagId != nullptr ? GetVendorTagId(index) : 0;
    if (id == 0) {
        throw std::runtime_error("the sibling camera layer has no vendor tag with index " +
                                 std::to_string(index));
    }
    return id;
}

SimDevice::SimDevice(const std::vector<CameraSetup>& cameras) {
    // The first Init resolves GetVendorTagId, which the records need.
    Lumora::IuiLayer::Init(0, nullptr);
    if (GetVendorTagId == nullptr) {
        throw std::runtime_error("the sibling camera layer could not be loaded");
    }
    const uint32_t recordTag = VendorTag(kCameraInfoTag);
    m_table.assign(cameras.size(), camera_info{});
    for (size_t i = 0; i < cameras.size(); ++i) {
        const CameraSetup& setup = cameras[i];
        m_characteristics.emplace_back(4, sizeof(LumoraCameraInfo) + 64);
        m_table[i].static_camera_characteristics = m_characteristics.back().Get();
        if (!setup.hasRecord) {
            continue;
        }
        LumoraCameraInfo record = {};
        record.logicalCamId = setup.logicalId;
        record.frameworkId = setup.frameworkId;
        record.numPhysicalCameras = static_cast<uint32_t>(setup.physical.size());
        for (size_t k = 0; k < setup.physical.size(); ++k) {
            const PhysicalCameraSetup& physical = setup.physical[k];
            record.cameraEntry[k].logicalCamId = physical.logicalId;
            record.cameraEntry[k].frameworkId = physical.frameworkId;
            record.cameraEntry[k].physicalCamId = physical.physicalId;
            record.cameraEntry[k].isPrimary = physical.primary ? 1 : 0;
        }
        record.type = setup.type;
        record.fullArrayWidth = setup.fullArrayWidth;
        record.fullArrayHeight = setup.fullArrayHeight;
        record.numSensorModes = static_cast<uint32_t>(setup.sensorModeFlags.size());
        for (size_t m = 0; m < setup.sensorModeFlags.size(); ++m) {
            record.sensorModes[m].flags = setup.sensorModeFlags[m];
        }
        m_sensorNames.push_back(setup.sensor);
        record.sensorName = m_sensorNames.back().c_str();
        m_characteristics.back().Add(recordTag, &record, sizeof(record),
                                     "the camera record of camera " + std::to_string(i));
    }
    Lumora::IuiLayer::Init(static_cast<unsigned int>(m_table.size()), m_table.data());
}

}  // namespace UilayerSim
