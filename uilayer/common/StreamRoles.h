// The stream roles as one table: per role its name, the session bit a
// configured stream of that role sets, and the bits a request with a buffer
// of that role sets on its primary caps and on the caps of the buffer's
// camera. The classification and the request update both read it; host
// tools take role names and bits from it.
#ifndef LUMORA_STREAM_ROLES_H
#define LUMORA_STREAM_ROLES_H

#include <cstddef>
#include <cstdint>

#include "IuiLayer.h"
#include "common/CapsConstants.h"

namespace Lumora {

struct _StreamRole {
    StreamType role;
    const char* name;     // the role's name without its EStreamType prefix
    size_t sessionBit;    // kNoCapsBit: the role sets no session bit
    _CapsBitset primary;  // request: bits of the logical camera
    _CapsBitset camera;   // request: bits of the buffer's camera
};

// A role whose buffers set its session bit on the request and on the
// buffer's camera.
constexpr _StreamRole RoleWithBit(StreamType role, const char* name, size_t bit) {
    return {role, name, bit, CapsBit(bit), CapsBit(bit)};
}

// Full-size RAW YUV shares the YUV snapshot session bit and, like live shot,
// sets nothing per request. Full-size and 2x2 QCFA RAW buffers also mark
// their camera as a physical RAW consumer.
constexpr _StreamRole kStreamRoles[EStreamTypeMax] = {
    {EStreamTypeNone, "None", kNoCapsBit, {}, {}},
    RoleWithBit(EStreamTypePreview, "Preview", CapsStreamPreview),
    RoleWithBit(EStreamTypeSnapshotYUV, "SnapshotYUV", CapsStreamSnapshotYUV),
    RoleWithBit(EStreamTypeSnapshotJPEG, "SnapshotJPEG", CapsStreamSnapshotJPEG),
    RoleWithBit(EStreamTypeSnapshotRAW, "SnapshotRAW", CapsStreamSnapshotRAW),
    RoleWithBit(EStreamTypeSnapshotRAWShort, "SnapshotRAWShort", CapsStreamSnapshotRAWShort),
    RoleWithBit(EStreamTypeSnapshotRAWMiddle, "SnapshotRAWMiddle", CapsStreamSnapshotRAWMiddle),
    {EStreamTypeSnapshotRAWFull, "SnapshotRAWFull", CapsStreamSnapshotRAWFull,
     CapsBit(CapsStreamSnapshotRAWFull),
     CapsBits(CapsStreamSnapshotRAWFull, CapsPhysicalRawStream)},
    {EStreamTypeSnapshotRAWFullYUV, "SnapshotRAWFullYUV", CapsStreamSnapshotYUV, {}, {}},
    {EStreamTypeSnapshotRAWQcfa2x2, "SnapshotRAWQcfa2x2", CapsStreamSnapshotRAWQcfa2x2,
     CapsBit(CapsStreamSnapshotRAWQcfa2x2),
     CapsBits(CapsStreamSnapshotRAWQcfa2x2, CapsPhysicalRawStream)},
    RoleWithBit(EStreamTypeVideo, "Video", CapsStreamVideo),
    {EStreamTypeVideoLiveShot, "VideoLiveShot", CapsStreamVideoLiveShot, {}, {}},
    RoleWithBit(EStreamTypeViewFinder, "ViewFinder", CapsStreamViewFinder),
    RoleWithBit(EStreamTypeASDPreview, "ASDPreview", CapsStreamASDPreview),
    RoleWithBit(EStreamTypeMetadata, "Metadata", CapsStreamMetadata),
    RoleWithBit(EStreamTypeMultiSpectralRaw, "MultiSpectralRaw", CapsStreamMultiSpectralRaw),
};

constexpr bool StreamRolesInOrder() {
    for (int32_t i = 0; i < EStreamTypeMax; ++i) {
        if (kStreamRoles[i].role != i) {
            return false;
        }
    }
    return true;
}
static_assert(StreamRolesInOrder(), "row k of kStreamRoles is the role with value k");

}  // namespace Lumora

#endif  // LUMORA_STREAM_ROLES_H
