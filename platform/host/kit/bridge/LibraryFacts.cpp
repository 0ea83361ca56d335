// The host bridge: the library's private tables as the kit needs them. This is
// the one host-side file compiled against the library's private headers.
#include "HostKit/LibraryFacts.h"

#include "common/VendorTags.h"
#include "resultappliedcaps/ResultAppliedCapabilities.h"

namespace HostKit {

// The kit's record is the library's, field by field.
static_assert(sizeof(AecRecord) == sizeof(Lumora::AecInfo), "AEC record size");
static_assert(offsetof(AecRecord, cameraId) == offsetof(Lumora::AecInfo, cameraId), "cameraId");
static_assert(offsetof(AecRecord, aecValue1) == offsetof(Lumora::AecInfo, aecValue1), "aecValue1");
static_assert(offsetof(AecRecord, aecValue2) == offsetof(Lumora::AecInfo, aecValue2), "aecValue2");
static_assert(offsetof(AecRecord, expCount) == offsetof(Lumora::AecInfo, expCount), "expCount");
static_assert(offsetof(AecRecord, extra) == offsetof(Lumora::AecInfo, extra), "extra");

const _LibraryFacts& LibraryFacts() {
    static constexpr _LibraryFacts kFacts = {
        Lumora::kTagCameraInfo,     Lumora::kTagSensorModeList, Lumora::kTagExposureCountList,
        Lumora::kTagMlftParameters, Lumora::kAecInfoCount,      Lumora::kMlftSwitchOffset,
    };
    return kFacts;
}

}  // namespace HostKit
