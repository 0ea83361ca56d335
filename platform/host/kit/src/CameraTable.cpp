#include "HostKit/CameraTable.h"

#include <algorithm>
#include <stdexcept>

#include "IuiLayer.h"
#include "HostKit/LibraryFacts.h"

namespace HostKit {

namespace {

LumoraCameraInfo RecordOf(const CameraSetup& setup) {
    LumoraCameraInfo record = {};
    record.logicalCamId = setup.logicalCamId;
    record.frameworkId = setup.frameworkId;
    record.numPhysicalCameras =
        setup.numPhysicalCameras.value_or(static_cast<uint32_t>(setup.physicalCameras.size()));
    const size_t cameras =
        std::min<size_t>(setup.physicalCameras.size(), LUMORA_MAX_PHYSICAL_CAMERAS);
    for (size_t k = 0; k < cameras; ++k) {
        const PhysicalCamera& camera = setup.physicalCameras[k];
        record.cameraEntry[k].logicalCamId = camera.logicalCamId;
        record.cameraEntry[k].frameworkId = camera.frameworkId;
        record.cameraEntry[k].physicalCamId = camera.physicalCamId;
        record.cameraEntry[k].isPrimary = camera.isPrimary;
    }
    record.type = setup.type;
    record.fullArrayWidth = setup.fullArrayWidth;
    record.fullArrayHeight = setup.fullArrayHeight;
    const size_t modes = std::min<size_t>(setup.sensorModeFlags.size(), LUMORA_MAX_SENSOR_MODES);
    record.numSensorModes = setup.numSensorModes.value_or(static_cast<uint32_t>(modes));
    for (size_t m = 0; m < modes; ++m) {
        record.sensorModes[m].flags = setup.sensorModeFlags[m];
    }
    return record;
}

}  // namespace

CameraSetup SingleCamera(const std::string& sensorName, uint32_t frameworkId,
                         uint32_t logicalCamId) {
    CameraSetup setup;
    setup.logicalCamId = logicalCamId;
    setup.frameworkId = frameworkId;
    setup.sensorName = sensorName;
    setup.physicalCameras.push_back(
        {static_cast<int32_t>(logicalCamId), static_cast<int32_t>(frameworkId), logicalCamId, 1});
    return setup;
}

CameraSetup MultiCamera(uint32_t count, uint32_t frameworkId, uint32_t logicalCamId) {
    CameraSetup setup;
    setup.logicalCamId = logicalCamId;
    setup.frameworkId = frameworkId;
    for (uint32_t k = 0; k < count; ++k) {
        setup.physicalCameras.push_back(
            {static_cast<int32_t>(k), static_cast<int32_t>(k), k, k == 0 ? 1 : 0});
    }
    return setup;
}

CameraTable::CameraTable(const std::vector<CameraSetup>& cameras) : m_setups(cameras) {}

CameraTable::~CameraTable() {
    if (!m_table.empty()) {
        Lumora::IuiLayer::Init(0, nullptr);
    }
}

void CameraTable::Add(const CameraSetup& camera) {
    m_setups.push_back(camera);
}

void CameraTable::AddWithoutRecord() {
    CameraSetup camera;
    camera.hasRecord = false;
    m_setups.push_back(camera);
}

void CameraTable::Init() {
    Lumora::IuiLayer::Init(0, nullptr);
    if (GetVendorTagId == nullptr) {
        throw std::runtime_error("the sibling camera layer could not be loaded");
    }
    const uint32_t recordTag = VendorTagId(LibraryFacts().cameraInfoTag);
    m_table.assign(m_setups.size(), camera_info{});
    for (size_t i = 0; i < m_setups.size(); ++i) {
        const CameraSetup& setup = m_setups[i];
        m_characteristics.emplace_back(4, sizeof(LumoraCameraInfo) + 64);
        m_table[i].static_camera_characteristics = m_characteristics.back().Get();
        if (!setup.hasRecord) {
            continue;
        }
        LumoraCameraInfo record = RecordOf(setup);
        if (setup.hasSensorName) {
            m_sensorNames.push_back(setup.sensorName);
            record.sensorName = m_sensorNames.back().c_str();
        }
        const size_t size = setup.shortRecord ? sizeof(record) / 2 : sizeof(record);
        m_characteristics.back().Set(recordTag, &record, size);
    }
    Lumora::IuiLayer::Init(static_cast<unsigned int>(m_table.size()), Table());
}

LumoraCameraInfo* CameraTable::Record(size_t index) {
    camera_metadata_ro_entry_t entry = {};
    if (index >= m_table.size() ||
        find_camera_metadata_ro_entry(m_table[index].static_camera_characteristics,
                                      VendorTagId(LibraryFacts().cameraInfoTag), &entry) != 0) {
        return nullptr;
    }
    return reinterpret_cast<LumoraCameraInfo*>(const_cast<uint8_t*>(entry.data.u8));
}

}  // namespace HostKit
