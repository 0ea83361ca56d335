#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace Lumora {

// Placeholder: filled in with its own concern.
int StaticSupportCapabilities::ParseStreamsInfo(const camera3_stream_configuration*) {
    return 0;
}
std::vector<_UIStreamInfo>* StaticSupportCapabilities::GetStreamByStreamType(StreamType type) {
    if (type < 0 || type >= EStreamTypeMax) {
        m_noStreams.clear();
        return &m_noStreams;
    }
    return &m_streamInfo[type];
}
StreamType StaticSupportCapabilities::GetStreamTypeByStream(const camera3_stream*) const {
    return EStreamTypeNone;
}
int StaticSupportCapabilities::GetCameraIndexByStream(const camera3_stream*) const {
    return -1;
}
bool IsShortRawStream(const camera3_stream*) {
    return false;
}
bool IsMiddleRawStream(const camera3_stream*) {
    return false;
}
}  // namespace Lumora
