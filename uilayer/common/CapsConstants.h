// Single-bit capability sets, one per named bit that the library sets or tests
// as a whole set, the frame rate classes, and the two capability groups of the
// session mask query.
#ifndef LUMORA_CAPS_CONSTANTS_H
#define LUMORA_CAPS_CONSTANTS_H

#include <cstddef>
#include <cstdint>

#include "IuiLayer.h"

namespace Lumora {

// The camera a query type names: its low 8 bits, TypeLogicalCamera or a
// physical camera id.
constexpr uint32_t QueryCameraId(QueryCapsType type) {
    return static_cast<uint32_t>(type) & 0xFFu;
}

// A place of CapsBits left empty.
constexpr size_t kNoCapsBit = 1024;

constexpr uint64_t CapsWordBit(size_t bit, size_t word) {
    return bit / 64 == word ? uint64_t{1} << (bit % 64) : 0;
}

// The set of up to three bits (each 0..99, or kNoCapsBit), usable in constant
// tables.
constexpr _CapsBitset CapsBits(size_t a, size_t b = kNoCapsBit, size_t c = kNoCapsBit) {
    return _CapsBitset(CapsWordBit(a, 0) | CapsWordBit(b, 0) | CapsWordBit(c, 0),
                       CapsWordBit(a, 1) | CapsWordBit(b, 1) | CapsWordBit(c, 1));
}

// The set with exactly bit `pos` (0..99).
constexpr _CapsBitset CapsBit(size_t pos) {
    return CapsBits(pos);
}

constexpr _CapsBitset kCapsStreamPreview = CapsBit(CapsStreamPreview);
constexpr _CapsBitset kCapsStreamSnapshotYUV = CapsBit(CapsStreamSnapshotYUV);
constexpr _CapsBitset kCapsStreamSnapshotJPEG = CapsBit(CapsStreamSnapshotJPEG);
constexpr _CapsBitset kCapsStreamSnapshotRAW = CapsBit(CapsStreamSnapshotRAW);
constexpr _CapsBitset kCapsStreamSnapshotRAWShort = CapsBit(CapsStreamSnapshotRAWShort);
constexpr _CapsBitset kCapsStreamSnapshotRAWFull = CapsBit(CapsStreamSnapshotRAWFull);
constexpr _CapsBitset kCapsStreamSnapshotRAWQcfa2x2 = CapsBit(CapsStreamSnapshotRAWQcfa2x2);
constexpr _CapsBitset kCapsStreamVideo = CapsBit(CapsStreamVideo);
constexpr _CapsBitset kCapsStreamViewFinder = CapsBit(CapsStreamViewFinder);
constexpr _CapsBitset kCapsStreamASDPreview = CapsBit(CapsStreamASDPreview);
constexpr _CapsBitset kCapsStreamMetadata = CapsBit(CapsStreamMetadata);
constexpr _CapsBitset kCapsStreamMultiSpectralRaw = CapsBit(CapsStreamMultiSpectralRaw);
constexpr _CapsBitset kCapsSHDROption = CapsBit(CapsSHDROption);
constexpr _CapsBitset kCapsSHDRAltPath = CapsBit(CapsSHDRAltPath);
constexpr _CapsBitset kCapsSHDRPath = CapsBit(CapsSHDRPath);
constexpr _CapsBitset kCapsSensorModeFlag19 = CapsBit(CapsSensorModeFlag19);
constexpr _CapsBitset kCapsSensorModeFlag20 = CapsBit(CapsSensorModeFlag20);
constexpr _CapsBitset kCapsPhysicalRawStream = CapsBit(CapsPhysicalRawStream);
constexpr _CapsBitset kCapsSHDRType1 = CapsBit(CapsSHDRType1);
constexpr _CapsBitset kCapsSHDRType2 = CapsBit(CapsSHDRType2);
constexpr _CapsBitset kCapsReserved24 = CapsBit(CapsReserved24);
constexpr _CapsBitset kCapsFps60 = CapsBit(CapsFps60);
constexpr _CapsBitset kCapsFps120 = CapsBit(CapsFps120);
constexpr _CapsBitset kCapsFps240 = CapsBit(CapsFps240);
constexpr _CapsBitset kCapsFps480 = CapsBit(CapsFps480);
constexpr _CapsBitset kCapsExtModePreview = CapsBit(CapsExtModePreview);
constexpr _CapsBitset kCaps3DolStreaming = CapsBit(Caps3DolStreaming);
constexpr _CapsBitset kCapsQBC4x = CapsBit(CapsQBC4x);
constexpr _CapsBitset kCapsVideo120Fps = CapsBit(CapsVideo120Fps);
constexpr _CapsBitset kCapsReserved33 = CapsBit(CapsReserved33);
constexpr _CapsBitset kCapsResolution4K = CapsBit(CapsResolution4K);
constexpr _CapsBitset kCapsResolution1080P = CapsBit(CapsResolution1080P);
constexpr _CapsBitset kCapsResolution720P = CapsBit(CapsResolution720P);
constexpr _CapsBitset kCapsSuperText = CapsBit(CapsSuperText);
constexpr _CapsBitset kCapsNotBokeh = CapsBit(CapsNotBokeh);
constexpr _CapsBitset kCapsMultiSpectral = CapsBit(CapsMultiSpectral);
constexpr _CapsBitset kCapsAIAFTouch2Track = CapsBit(CapsAIAFTouch2Track);
constexpr _CapsBitset kCapsOpMode80BE8009 = CapsBit(CapsOpMode80BE8009);
constexpr _CapsBitset kCapsSystemCamera = CapsBit(CapsSystemCamera);
constexpr _CapsBitset kCapsBokehOrSingleCamera = CapsBit(CapsBokehOrSingleCamera);
constexpr _CapsBitset kCapsBokeh = CapsBit(CapsBokeh);
constexpr _CapsBitset kCapsSystemCameraApp = CapsBit(CapsSystemCameraApp);
constexpr _CapsBitset kCapsVideoEIS = CapsBit(CapsVideoEIS);
constexpr _CapsBitset kCapsProVideo = CapsBit(CapsProVideo);
constexpr _CapsBitset kCapsProVideoLog = CapsBit(CapsProVideoLog);
constexpr _CapsBitset kCapsTwoCameraAlwaysOn = CapsBit(CapsTwoCameraAlwaysOn);
constexpr _CapsBitset kCapsVideoStream = CapsBit(CapsVideoStream);
constexpr _CapsBitset kCapsCameraUnitSdk = CapsBit(CapsCameraUnitSdk);
constexpr _CapsBitset kCapsSystemCameraClient = CapsBit(CapsSystemCameraClient);
constexpr _CapsBitset kCapsThirdPartyClient = CapsBit(CapsThirdPartyClient);
constexpr _CapsBitset kCapsScanMode = CapsBit(CapsScanMode);
constexpr _CapsBitset kCapsEngineerMode = CapsBit(CapsEngineerMode);
constexpr _CapsBitset kCaps2x2XCFA = CapsBit(Caps2x2XCFA);
constexpr _CapsBitset kCapsVideoMLFT = CapsBit(CapsVideoMLFT);
constexpr _CapsBitset kCapsOverrideASDStreamDtSpace = CapsBit(CapsOverrideASDStreamDtSpace);
constexpr _CapsBitset kCapsOisCloseOcs = CapsBit(CapsOisCloseOcs);
constexpr _CapsBitset kCapsOisCenterOn = CapsBit(CapsOisCenterOn);
constexpr _CapsBitset kCapsPreviewOis = CapsBit(CapsPreviewOis);

// Sets the frame rate class of a session's maximum frame rate: 60, 120, 240
// or 480 fps each have a bit, any other rate has none.
inline void SetFpsCaps(_CapsBitset& caps, int32_t maxFps) {
    switch (maxFps) {
        case 60:
            caps.set(CapsFps60);
            break;
        case 120:
            caps.set(CapsFps120);
            break;
        case 240:
            caps.set(CapsFps240);
            break;
        case 480:
            caps.set(CapsFps480);
            break;
        default:
            break;
    }
}

// Capabilities that GetStaticCapsMask reports for the logical camera and for a
// physical camera, in ascending order.
constexpr DesiredSupportCaps kLogicalCameraCapsGroup[] = {
    CapsFps60, CapsFps120, CapsFps240, CapsFps480, CapsExtModePreview, CapsVideo120Fps};
constexpr DesiredSupportCaps kPhysicalCameraCapsGroup[] = {
    CapsSHDRAltPath, CapsSHDRPath,  CapsSensorModeFlag19, CapsSensorModeFlag20,
    CapsSHDRType1,   CapsSHDRType2, Caps3DolStreaming};

}  // namespace Lumora

#endif  // LUMORA_CAPS_CONSTANTS_H
