// The HAL's camera table: one camera_info per camera whose static
// characteristics carry the sibling layer's per-camera record (vendor tag
// index 5), handed to IuiLayer::Init.
#ifndef HOSTKIT_CAMERA_TABLE_H
#define HOSTKIT_CAMERA_TABLE_H

#include <LumoraCameraInfo.h>
#include <hardware/camera_common.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "HostKit/Metadata.h"

namespace HostKit {

// One physical camera entry of a record.
struct PhysicalCamera {
    int32_t logicalCamId = 0;
    int32_t frameworkId = 0;
    uint32_t physicalCamId = 0;
    int32_t isPrimary = 0;
};

struct CameraSetup {
    bool hasRecord = true;  // false: characteristics without a record
    uint32_t frameworkId = 0;
    uint32_t logicalCamId = 0;
    std::vector<PhysicalCamera> physicalCameras;  // at most eight reach the record
    // The counts as written in the record, when they are not the list sizes.
    std::optional<uint32_t> numPhysicalCameras;
    std::optional<uint32_t> numSensorModes;
    bool hasSensorName = true;  // false: a null sensor name
    std::string sensorName;
    uint32_t type = 0;
    uint32_t fullArrayWidth = 0;
    uint32_t fullArrayHeight = 0;
    std::vector<uint16_t> sensorModeFlags;
    bool shortRecord = false;  // a payload of half a record
};

// Camera `logicalCamId` with one physical camera of the same ids, primary.
CameraSetup SingleCamera(const std::string& sensorName, uint32_t frameworkId = 0,
                         uint32_t logicalCamId = 0);
// Logical camera of physical ids 0..count-1 with framework ids 0..count-1,
// the first one primary.
CameraSetup MultiCamera(uint32_t count, uint32_t frameworkId, uint32_t logicalCamId);

class CameraTable {
public:
    CameraTable() = default;
    explicit CameraTable(const std::vector<CameraSetup>& cameras);
    // Hands the library an empty table first, so that no parser reads this one.
    ~CameraTable();
    CameraTable(const CameraTable&) = delete;
    CameraTable& operator=(const CameraTable&) = delete;

    // A camera; its index is the order of addition.
    void Add(const CameraSetup& camera);
    void AddWithoutRecord();
    // Forgets the cameras added; the tables built so far stay valid until the
    // next Init replaces them in the library.
    void Clear() { m_setups.clear(); }
    // Builds the table and hands it to IuiLayer::Init (after an Init with no
    // cameras, which resolves the vendor tag lookup the records need). Throws
    // std::runtime_error when the sibling camera layer cannot be loaded.
    void Init();

    camera_info* Table() { return m_table.empty() ? nullptr : m_table.data(); }
    size_t Count() const { return m_setups.size(); }
    // The record as stored in camera `index`'s characteristics (null if none).
    LumoraCameraInfo* Record(size_t index);

private:
    std::vector<CameraSetup> m_setups;
    std::vector<camera_info> m_table;
    std::deque<Metadata> m_characteristics;
    std::deque<std::string> m_sensorNames;
};

}  // namespace HostKit

#endif  // HOSTKIT_CAMERA_TABLE_H
