// Other modules call the parser through fixed virtual slots: a reordered or
// inserted declaration in IuiLayer breaks them silently. These tests read the
// slot of every operation from its member pointer.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "IuiLayer.h"

namespace {

using Lumora::IuiLayer;

// Vtable slot of a virtual member function pointer under the C++ ABI of the
// target: the two destructor entries take slots 0 and 1.
template <typename MemberPointer>
long SlotOf(MemberPointer pointer) {
    struct Representation {
        ptrdiff_t ptr;
        ptrdiff_t adj;
    } raw;
    static_assert(sizeof(MemberPointer) == sizeof(Representation), "two-word member pointers");
    memcpy(&raw, &pointer, sizeof(raw));
#if defined(__aarch64__) || defined(__arm__)
    // The virtual flag lives in the adjustment; ptr is the byte offset.
    EXPECT_EQ(1, raw.adj & 1);
    return static_cast<long>(raw.ptr / static_cast<ptrdiff_t>(sizeof(void*)));
#else
    // Virtual: ptr is 1 + the byte offset in the vtable.
    EXPECT_EQ(1, raw.ptr & 1);
    return static_cast<long>((raw.ptr - 1) / static_cast<ptrdiff_t>(sizeof(void*)));
#endif
}

TEST(InterfaceSlotTest, OperationsKeepTheirSlots) {
    using StreamsOfSession = std::vector<Lumora::_UIStreamInfo>* (IuiLayer::*)(Lumora::StreamType);
    using StreamsOfFrame =
        std::vector<Lumora::_UIStreamInfo>* (IuiLayer::*)(unsigned int, Lumora::StreamType);
    const long base = 2;  // after the two destructor slots
    EXPECT_EQ(base + 0, SlotOf(&IuiLayer::IsSessionSupportCaps));
    EXPECT_EQ(base + 1, SlotOf(static_cast<StreamsOfSession>(&IuiLayer::GetStreamByStreamType)));
    EXPECT_EQ(base + 2, SlotOf(static_cast<StreamsOfFrame>(&IuiLayer::GetStreamByStreamType)));
    EXPECT_EQ(base + 3, SlotOf(&IuiLayer::GetFwkCameraIdByCameraIndex));
    EXPECT_EQ(base + 4, SlotOf(&IuiLayer::GetFwkCameraIdByStream));
    EXPECT_EQ(base + 5, SlotOf(&IuiLayer::GetCameraIndexByStream));
    EXPECT_EQ(base + 6, SlotOf(&IuiLayer::GetStreamTypeByStream));
    EXPECT_EQ(base + 7, SlotOf(&IuiLayer::IsRequestSupportCaps));
    EXPECT_EQ(base + 8, SlotOf(&IuiLayer::GetRequestSupportCaps));
    EXPECT_EQ(base + 9, SlotOf(&IuiLayer::GetOriginalRequestTuningMode));
    EXPECT_EQ(base + 10, SlotOf(&IuiLayer::GetSensorModeIndexByCaps));
    EXPECT_EQ(base + 11, SlotOf(&IuiLayer::ParseStaticCapabilities));
    EXPECT_EQ(base + 12, SlotOf(&IuiLayer::ParseStreamCapabilities));
    EXPECT_EQ(base + 13, SlotOf(&IuiLayer::UpdatePerRequestCaps));
    EXPECT_EQ(base + 14, SlotOf(&IuiLayer::UpdateResultAppliedCaps));
    EXPECT_EQ(base + 15, SlotOf(&IuiLayer::GetPipelineName));
    EXPECT_EQ(base + 16, SlotOf(&IuiLayer::GetPackageName));
    EXPECT_EQ(base + 17, SlotOf(&IuiLayer::GetActivityName));
    EXPECT_EQ(base + 18, SlotOf(&IuiLayer::IsDisableAePrecaptureTriggerForSnapshot));
    EXPECT_EQ(base + 19, SlotOf(&IuiLayer::ProcessRemapZoomRatio));
    EXPECT_EQ(base + 20, SlotOf(&IuiLayer::GetCameraMode));
    EXPECT_EQ(base + 21, SlotOf(&IuiLayer::GetVideoStabMode));
    EXPECT_EQ(base + 22, SlotOf(&IuiLayer::GetSensorDimension));
    EXPECT_EQ(base + 23, SlotOf(&IuiLayer::GetStarModeAEInfo));
    EXPECT_EQ(base + 24, SlotOf(&IuiLayer::GetWarmStartStateByCaps));
    EXPECT_EQ(base + 25, SlotOf(&IuiLayer::GetStaticCapsMask));
    EXPECT_EQ(base + 26, SlotOf(&IuiLayer::GetSatStaticCaps));
}

}  // namespace
