// Capture requests and capture results as the HAL hands them to the request
// path: request settings with output buffers, result metadata with the AEC
// stage's exposure count list and the MLFT parameter block.
#ifndef HOSTKIT_CAPTURE_H
#define HOSTKIT_CAPTURE_H

#include <hardware/camera3.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "HostKit/LibraryFacts.h"
#include "HostKit/Metadata.h"

namespace HostKit {

class Request {
public:
    explicit Request(uint32_t frameNumber = 0);

    // The settings, made on first use (a request without them has none).
    Metadata& Settings();
    // An output buffer of `stream` (which may be null).
    Request& Buffer(camera3_stream_t* stream);
    // The sensor mode list (vendor tag 49) and the zoom ratio.
    Request& SensorModes(const std::vector<int32_t>& modes);
    Request& ZoomRatio(float ratio);
    // A buffer count without the array it counts.
    Request& WithoutBufferArray();

    // The request as the HAL passes it (valid while this object lives).
    camera3_capture_request_t* Get();

private:
    camera3_capture_request_t m_request = {};
    std::unique_ptr<Metadata> m_settings;
    std::vector<camera3_stream_buffer_t> m_buffers;
    bool m_noBufferArray = false;
};

class Result {
public:
    explicit Result(uint32_t frameNumber = 0, bool withMetadata = true);

    // The metadata; only for a result made with it.
    Metadata& Meta() { return *m_metadata; }
    // Without metadata the setters below change nothing.
    // One more record of the exposure count list (at most eight count). The
    // list always holds eight records; unused ones belong to no camera (-1).
    Result& Aec(int32_t cameraId, int32_t expCount, float value1 = 1.0f, float value2 = 2.0f,
                uint32_t extra = 0);
    // The whole list at once (an empty one is eight unused records).
    Result& AecList(const std::vector<AecRecord>& records);
    // The MLFT block of `size` zero bytes with `enable` at the switch (when
    // the block is long enough to hold it); without a size, just long enough.
    Result& Mlft(uint32_t enable, size_t size);
    Result& Mlft(uint32_t enable);

    // The result as the HAL passes it (valid while this object lives).
    camera3_capture_result_t* Get();

private:
    camera3_capture_result_t m_result = {};
    std::unique_ptr<Metadata> m_metadata;
    std::vector<AecRecord> m_aec;
};

}  // namespace HostKit

#endif  // HOSTKIT_CAPTURE_H
