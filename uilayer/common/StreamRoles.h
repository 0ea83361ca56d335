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

// Full-size RAW YUV shares the YUV snapshot session bit and, like live shot,
// sets nothing per request. Full-size and 2x2 QCFA RAW buffers also mark
// their camera as a physical RAW consumer.
constexpr _StreamRole kStreamRoles[EStreamTypeMax] = {
    {EStreamTypeNone, "None", kNoCapsBit, {}, {}},
    {EStreamTypePreview, "Preview", CapsStreamPreview, CapsBit(CapsStreamPreview),
     CapsBit(CapsStreamPreview)},
    {EStreamTypeSnapshotYUV, "SnapshotYUV", CapsStreamSnapshotYUV, CapsBit(CapsStreamSnapshotYUV),
     CapsBit(CapsStreamSnapshotYUV)},
    {EStreamTypeSnapshotJPEG, "SnapshotJPEG", CapsStreamSnapshotJPEG,
     CapsBit(CapsStreamSnapshotJPEG), CapsBit(CapsStreamSnapshotJPEG)},
    {EStreamTypeSnapshotRAW, "SnapshotRAW", CapsStreamSnapshotRAW, CapsBit(CapsStreamSnapshotRAW),
     CapsBit(CapsStreamSnapshotRAW)},
    {EStreamTypeSnapshotRAWShort, "SnapshotRAWShort", CapsStreamSnapshotRAWShort,
     CapsBit(CapsStreamSnapshotRAWShort), CapsBit(CapsStreamSnapshotRAWShort)},
    {EStreamTypeSnapshotRAWMiddle, "SnapshotRAWMiddle", CapsStreamSnapshotRAWMiddle,
     CapsBit(CapsStreamSnapshotRAWMiddle), CapsBit(CapsStreamSnapshotRAWMiddle)},
    {EStreamTypeSnapshotRAWFull, "SnapshotRAWFull", CapsStreamSnapshotRAWFull,
     CapsBit(CapsStreamSnapshotRAWFull),
     CapsBits(CapsStreamSnapshotRAWFull, CapsPhysicalRawStream)},
    {EStreamTypeSnapshotRAWFullYUV, "SnapshotRAWFullYUV", CapsStreamSnapshotYUV, {}, {}},
    {EStreamTypeSnapshotRAWQcfa2x2, "SnapshotRAWQcfa2x2", CapsStreamSnapshotRAWQcfa2x2,
     CapsBit(CapsStreamSnapshotRAWQcfa2x2),
     CapsBits(CapsStreamSnapshotRAWQcfa2x2, CapsPhysicalRawStream)},
    {EStreamTypeVideo, "Video", CapsStreamVideo, CapsBit(CapsStreamVideo),
     CapsBit(CapsStreamVideo)},
    {EStreamTypeVideoLiveShot, "VideoLiveShot", CapsStreamVideoLiveShot, {}, {}},
    {EStreamTypeViewFinder, "ViewFinder", CapsStreamViewFinder, CapsBit(CapsStreamViewFinder),
     CapsBit(CapsStreamViewFinder)},
    {EStreamTypeASDPreview, "ASDPreview", CapsStreamASDPreview, CapsBit(CapsStreamASDPreview),
     CapsBit(CapsStreamASDPreview)},
    {EStreamTypeMetadata, "Metadata", CapsStreamMetadata, CapsBit(CapsStreamMetadata),
     CapsBit(CapsStreamMetadata)},
    {EStreamTypeMultiSpectralRaw, "MultiSpectralRaw", CapsStreamMultiSpectralRaw,
     CapsBit(CapsStreamMultiSpectralRaw), CapsBit(CapsStreamMultiSpectralRaw)},
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
