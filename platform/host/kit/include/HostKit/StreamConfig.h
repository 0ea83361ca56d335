// Output stream descriptions and the stream configuration the HAL hands to
// ParseStaticCapabilities and ParseStreamCapabilities.
#ifndef HOSTKIT_STREAM_CONFIG_H
#define HOSTKIT_STREAM_CONFIG_H

#include <hardware/camera3.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "HostKit/Metadata.h"

namespace HostKit {

struct StreamSetup {
    int streamType = 0;
    uint32_t width = 0, height = 0;
    int format = 0;
    uint32_t usage = 0;
    int32_t dataSpace = 0;
    bool hasPhysicalId = true;  // false: a null physical_camera_id
    std::string physicalId;
    int64_t useCase = 0;
    uint32_t extMode = 0;
    uint32_t extFlags = 0;
    int64_t dynamicRangeProfile = 1;
};

// Common streams; physicalId "" is a stream of the logical camera.
StreamSetup PreviewStream(uint32_t width = 1920, uint32_t height = 1080,
                          const std::string& physicalId = "");
StreamSetup VideoStream(uint32_t width = 1920, uint32_t height = 1080,
                        const std::string& physicalId = "");
StreamSetup JpegStream(uint32_t width = 4000, uint32_t height = 3000,
                       const std::string& physicalId = "");
StreamSetup YuvSnapshotStream(uint32_t width = 4000, uint32_t height = 3000,
                              const std::string& physicalId = "");
StreamSetup RawStream(int format, uint32_t width, uint32_t height,
                      const std::string& physicalId = "", int64_t useCase = 0);

// A stream configuration owning its streams, their physical camera id strings
// and the session parameters.
class StreamConfig {
public:
    explicit StreamConfig(uint32_t operationMode = 0);
    StreamConfig(const StreamConfig&) = delete;
    StreamConfig& operator=(const StreamConfig&) = delete;

    camera3_stream_t* Add(const StreamSetup& setup);
    // A null entry in the stream array.
    void AddNull();
    camera3_stream_t* Stream(size_t index) { return m_pointers.at(index); }
    // The stream array, null entries included.
    const std::vector<camera3_stream_t*>& Streams() const { return m_pointers; }
    Metadata& SessionParams() { return m_sessionParams; }
    // The library may rewrite the mode in place; this sets it again.
    void SetOperationMode(uint32_t mode) { m_config.operation_mode = mode; }
    // A configuration without session parameters.
    void WithoutSessionParams() { m_noSessionParams = true; }
    // A stream count without the array it counts (at least one).
    void WithoutStreamArray() { m_noStreamArray = true; }

    // The configuration as the HAL passes it (valid while this object lives).
    camera3_stream_configuration_t* Get();

private:
    std::deque<camera3_stream_t> m_streams;
    std::deque<std::string> m_physicalIds;
    std::vector<camera3_stream_t*> m_pointers;
    Metadata m_sessionParams;
    camera3_stream_configuration_t m_config = {};
    bool m_noSessionParams = false;
    bool m_noStreamArray = false;
};

}  // namespace HostKit

#endif  // HOSTKIT_STREAM_CONFIG_H
