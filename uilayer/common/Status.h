// What the library's operations return besides their answers. Callers of the
// camera layer test these numbers, so they never change.
#ifndef LUMORA_STATUS_H
#define LUMORA_STATUS_H

#include <cstdint>

namespace Lumora {

// Status of an operation: success, an invalid argument (a request update
// also reports a request that brought no sensor mode list with it), and a
// bokeh session on a number of cameras it cannot run on (after the abort).
constexpr int32_t kStatusOk = 0;
constexpr int32_t kStatusUnsupported = 1;
constexpr int32_t kStatusInvalidArgument = 4;

// Answer of a camera query (framework id, camera index or entry) that finds
// no camera; also the framework id of a stream that names no physical camera.
constexpr int32_t kNoCamera = -1;
// Answer of a tuning mode query that finds no matching entry.
constexpr int32_t kNoTuningMode = -1;

}  // namespace Lumora

#endif  // LUMORA_STATUS_H
