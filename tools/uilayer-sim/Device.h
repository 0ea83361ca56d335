// The host camera device of a scenario: the HAL's camera table whose static
// characteristics carry the sibling layer's per-camera records, and owned
// metadata buffers for session parameters, request settings and results.
#ifndef UILAYER_SIM_DEVICE_H
#define UILAYER_SIM_DEVICE_H

#include <LumoraCameraInfo.h>
#include <hardware/camera_common.h>
#include <system/camera_metadata.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "Scenario.h"

namespace UilayerSim {

// An owned metadata buffer.
class MetadataBuffer {
public:
    MetadataBuffer() = default;
    MetadataBuffer(size_t entryCapacity, size_t dataCapacity);
    ~MetadataBuffer();
    MetadataBuffer(MetadataBuffer&& other) noexcept;
    MetadataBuffer& operator=(MetadataBuffer&& other) noexcept;
    MetadataBuffer(const MetadataBuffer&) = delete;
    MetadataBuffer& operator=(const MetadataBuffer&) = delete;

    camera_metadata_t* Get() const { return m_metadata; }

    // Adds an entry of `count` elements of the tag's type; throws
    // std::runtime_error when the metadata store refuses it.
    void Add(uint32_t tagId, const void* data, size_t count, const std::string& what);
    // Adds a scenario tag value (a vendor index is resolved through
    // GetVendorTagId, so only after the first IuiLayer::Init).
    void Add(const TagValue& value);

    // Metadata holding `tags`, with room for `spareEntries` more entries.
    static MetadataBuffer WithTags(const std::vector<TagValue>& tags, size_t spareEntries,
                                   size_t spareData);

private:
    camera_metadata_t* m_metadata = nullptr;
};

// Tag id of a vendor tag index; throws std::runtime_error when the sibling
// camera layer has no id for it.
uint32_t VendorTag(uint32_t index);

class SimDevice {
public:
    // Resolves the vendor tag lookup (IuiLayer::Init with no cameras), builds
    // the camera table and hands it to IuiLayer::Init. Throws
    // std::runtime_error when the sibling camera layer cannot be loaded.
    explicit SimDevice(const std::vector<CameraSetup>& cameras);
    SimDevice(const SimDevice&) = delete;
    SimDevice& operator=(const SimDevice&) = delete;

    size_t Count() const { return m_table.size(); }

private:
    std::vector<camera_info> m_table;
    std::vector<MetadataBuffer> m_characteristics;
    std::deque<std::string> m_sensorNames;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_DEVICE_H
