// The capability reference table: every bit, and every rule of the library
// that sets or clears one, its inputs written exactly as the library reads them;
// and the lookups over it.
#include "CapabilityReference.h"

#include <algorithm>
#include <iterator>

#include "common/ConfigurationSteps.h"

namespace Lumora {

namespace {

#define STEP(name) ConfigStepName(EConfigStep::name)
// Library functions outside the configuration steps that set or clear bits.
constexpr const char* kInitPackageName = "InitPackageName";
constexpr const char* kUpdatePerRequestCaps = "UpdatePerRequestCaps";
constexpr const char* kParseOriginalRequestSetting = "ParseOriginalRequestSetting";

constexpr uint8_t S = kScopeSessionLogical;
constexpr uint8_t P = kScopeSessionPhysical;
constexpr uint8_t R = kScopeRequestLogical;
constexpr uint8_t Q = kScopeRequestPhysical;

// Inputs shared by many rules.
#define STREAM_FACTS "stream:stream_type; stream:usage; stream:format; stream:data_space"
#define VIEW_FINDER_INPUTS                                                      \
    "config:AsdVideoOperationMode; "                                            \
    "config:AsdFullFovStreamInfo; "                                             \
    "config:PipViewFinderOperationMode; "                                       \
    "config:PipViewFinderStreamInfo; "                                          \
    "config:PipViewFinderMasterModeStreamInfo; operation-mode:0x8001, 0x8009, " \
    "0x8019, 0x80B4"
#define BUFFER_INPUTS "request:output_buffers; stream:physical_camera_id"
#define FPS_INPUT "session-param:ANDROID_CONTROL_AE_TARGET_FPS_RANGE"
#define CAMERA_MODE_INPUT "session-tag:160"
#define CLIENT_INPUTS                                              \
    "session-tag:34; session-tag:71; config:SystemCameraPackage; " \
    "config:EngineerModePackage"
#define MODE_LIST_INPUTS "request-tag:49; session:numPhysicalCameras"
#define WARM_START_INPUTS                                  \
    "request-tag:49; config:WarmDolState; "                \
    "file:/data/vendor/camera/aecWarmStartCamera_%d.txt; " \
    "session-tag:85; session-tag:109"
#define AEC_INPUTS "result-tag:156; caps:53; session-tag:109"
#define SHDR_INPUTS "config:ShdrTypeMatching; operation-mode:any; " FPS_INPUT

// One row a bit and one a rule: the rows are kept whole on one line each.
// clang-format off
// Bits 95 and 97 are both set in tele-converter mode and cleared in any other.
#define TELE_CONVERTER_RULES(bit) \
    {bit, S, kEffectSets, STEP(ParseSessionParams), "operation mode 0x80B4 (tele-converter)", "operation-mode:0x80B4"}, \
    {bit, S, kEffectClears, STEP(ParseSessionParams), "any operation mode other than 0x80B4", "operation-mode:0x80B4"}

const _Capability kCapabilities[kCapabilityCount] = {
    {0, "CapsStreamPreview", nullptr, "A preview stream is configured (session) or carries a buffer (request)."},
    {1, "CapsStreamSnapshotYUV", nullptr, "A YUV snapshot stream (SnapshotYUV or full-size SnapshotRAWFullYUV) is configured, or a SnapshotYUV buffer is requested."},
    {2, "CapsStreamSnapshotJPEG", nullptr, "A JPEG snapshot stream is configured or requested."},
    {3, "CapsStreamSnapshotRAW", nullptr, "A plain RAW snapshot stream is configured or requested."},
    {4, "CapsStreamSnapshotRAWShort", nullptr, "A short-exposure RAW stream is configured or requested."},
    {5, "CapsStreamSnapshotRAWMiddle", nullptr, "A middle-exposure RAW stream is configured or requested."},
    {6, "CapsStreamSnapshotRAWFull", nullptr, "A full-size RAW stream is configured or requested; per camera: on that camera."},
    {7, "CapsStreamSnapshotRAWQcfa2x2", nullptr, "A 2x2 QCFA (binned remosaic) RAW stream is configured or requested; per camera: on that camera."},
    {8, "CapsStreamVideo", nullptr, "A video stream is classified (session) or carries a buffer (request)."},
    {9, "CapsStreamVideoLiveShot", nullptr, "A video live-shot stream is configured (requests set no bit for it)."},
    {10, "CapsStreamViewFinder", nullptr, "A view-finder stream is configured or requested."},
    {11, "CapsStreamASDPreview", nullptr, "An ASD preview stream is configured or requested."},
    {12, "CapsStreamMetadata", nullptr, "A metadata stream is configured or requested."},
    {13, "CapsStreamMultiSpectralRaw", nullptr, "A multispectral RAW stream is configured or requested."},
    {14, nullptr, nullptr, "Unassigned: no name, nothing sets or tests it."},
    {15, "CapsSHDR", nullptr, "Staggered HDR is configured for this camera; without it a request's bit 18 is withdrawn for the camera."},
    {16, "CapsSHDROption", nullptr, "The applying SHDR row has its option value set."},
    {17, "CapsSHDRAltPath", nullptr, "SHDR alternative path: type 2 with a RAW12 snapshot, a camera outside the SHDR row's mask, or a one-exposure AEC plan."},
    {18, "CapsSHDRPath", nullptr, "SHDR path of the sensor mode; a sensor-mode selection bit."},
    {19, "CapsSensorModeFlag19", nullptr, "Sensor-mode selection bit chosen per request (mode list or warm start)."},
    {20, "CapsSensorModeFlag20", nullptr, "Sensor-mode selection bit chosen per request (mode list or warm start)."},
    {21, "CapsPhysicalRawStream", nullptr, "This camera delivers a full-size or 2x2 QCFA RAW stream (sensor mode reduction treats it specially)."},
    {22, "CapsSHDRType1", nullptr, "SHDR type 1 sensor mode."},
    {23, "CapsSHDRType2", nullptr, "SHDR type 2 sensor mode (with a RAW12 snapshot on the session)."},
    {24, "CapsReserved24", nullptr, "Reserved: a defined constant; nothing in the library sets or tests it."},
    {25, "CapsFps60", nullptr, "The session runs at a maximum of 60 fps."},
    {26, "CapsFps120", nullptr, "The session runs at a maximum of 120 fps."},
    {27, "CapsFps240", nullptr, "The session runs at a maximum of 240 fps."},
    {28, "CapsFps480", nullptr, "The session runs at a maximum of 480 fps."},
    {29, "CapsExtModePreview", nullptr, "A preview in the camera layer's extended stream mode, in a mode that allows it."},
    {30, "Caps3DolStreaming", nullptr, "The camera's sensor streams DCG/VS (three exposures)."},
    {31, "CapsQBC4x", nullptr, "Per request and camera: the zoom ratio reached the camera's XCFA switch threshold."},
    {32, "CapsVideo120Fps", nullptr, "Video camera mode at 120 fps."},
    {33, "CapsReserved33", nullptr, "Reserved: a defined constant; nothing in the library sets or tests it."},
    {34, "CapsResolution4K", nullptr, "A preview or video stream of 2160 lines or more."},
    {35, "CapsResolution1080P", nullptr, "A preview or video stream of 1080 to 2159 lines."},
    {36, "CapsResolution720P", nullptr, "A preview or video stream of 720 to 1079 lines."},
    {37, "CapsSuperText", nullptr, "The client's camera mode is a super text mode."},
    {38, "CapsNotBokeh", nullptr, "The session is not a bokeh session."},
    {39, "CapsMultiSpectral", nullptr, "The multispectral sensor may register: system camera without a video stream."},
    {40, "CapsAIAFTouch2Track", nullptr, "AI autofocus touch-to-track for this mode (session) and camera (per camera)."},
    {41, "CapsOpMode80BE8009", nullptr, "The operation mode is 0x80BE or 0x8009."},
    {42, "CapsSystemCamera", nullptr, "The client is the system camera (or the camera unit)."},
    {43, "CapsBokehOrSingleCamera", nullptr, "A bokeh session, or a camera with one physical camera."},
    {44, "CapsPhotoRealtimeEIS", nullptr, "Real-time photo stabilisation in this mode on a multi-camera set."},
    {45, "CapsBokeh", nullptr, "A bokeh operation mode."},
    {46, "CapsVideoCameraMode", nullptr, "The client's camera mode is a video mode."},
    {47, "CapsRawStream", nullptr, "A RAW stream is configured (or a YUV snapshot in mode 0x8001)."},
    {48, "CapsSystemCameraApp", nullptr, "The system camera app itself (not the camera unit)."},
    {49, "CapsVideoEIS", nullptr, "Video stabilisation is on for the session."},
    {50, "CapsProVideo", nullptr, "A professional video camera mode."},
    {51, "CapsProVideoLog", nullptr, "The professional video log camera mode."},
    {52, "CapsTwoCameraAlwaysOn", nullptr, "The engineer camera keeps two cameras on."},
    {53, "CapsVideoStream", nullptr, "A video-encoder stream is configured."},
    {54, "CapsCameraUnitSdk", nullptr, "The client is the camera unit SDK."},
    {55, "CapsSystemCameraClient", nullptr, "The client is the system camera (or the camera unit)."},
    {56, "CapsThirdPartyClient", nullptr, "The client is neither the engineer camera nor the system camera."},
    {57, "CapsScanMode", nullptr, "The client is a scan-mode package."},
    {58, "CapsEngineerMode", nullptr, "The client is the engineer camera."},
    {59, "Caps2x2XCFA", nullptr, "The camera's sensor has 2x2 XCFA and it is enabled."},
    {60, "CapsOpModeMarker", nullptr, "Every request of a session in mode 0x8009 or 0x80BE."},
    {61, "CapsVideoMLFT", nullptr, "The video MLFT node runs in this mode."},
    {62, "CapsSkipRawStream", nullptr, "The RAW stream may be skipped (mode listed, opened from the main menu)."},
    {63, "CapsReturnPrivateChiPhyMetaEarly", nullptr, "Private physical metadata is returned early in this mode."},
    {64, "CapsOverrideASDStreamDtSpace", nullptr, "The app's ASD stream data space is overridden."},
    {65, "CapsStarModeOverrideAE", nullptr, "Star mode overrides the AE values."},
    {66, "CapsFineFood", nullptr, "The client's camera mode is the fine food mode."},
    {67, "CapsBokehOperationMode", nullptr, "A bokeh operation mode (with bit 45)."},
    {68, "CapsBokehStartWithFallback", nullptr, "A bokeh session starts with fallback."},
    {69, "CapsBokehTriplePreview", nullptr, "A bokeh session with three physical preview cameras."},
    {70, "CapsGrMode", nullptr, "The client's camera mode is gr_mode."},
    {71, "CapsThirdAppStream", nullptr, "Streams of a client other than the system camera."},
    {72, "CapsDisableProVideoIZoom", nullptr, "Per camera: in-sensor zoom is off in the professional video modes."},
    {73, "CapsCtsVerifier", nullptr, "The client is the CTS verifier."},
    {74, "CapsThirdAppTuning", nullptr, "Tuning of a client other than the system camera."},
    {75, "Caps4x4XCFADisableMultiFrame", nullptr, "Per camera: multi-frame is off on this XCFA sensor."},
    {76, "CapsExtModeStream", nullptr, "Some stream is in the camera layer's extended stream mode."},
    {77, "CapsProVideoFamily", nullptr, "A professional video camera mode or mode 0x80BE/0x8009."},
    {78, "CapsCaptureHdrP010Preview", nullptr, "A P010 preview in a capture-HDR mode."},
    {79, "CapsOisCloseOcs", nullptr, "Per camera: OIS must close OCS."},
    {80, "CapsOisCenterOn", nullptr, "Per camera: OIS centre-on for this client."},
    {81, "CapsSensorModeFlag81", "Caps4x4Izoom", "Session, per camera: the sensor has 4x4 in-sensor zoom; per request: a sensor-mode selection bit (mode list value 11)."},
    {82, "CapsSatFusion", nullptr, "Multi-camera zoom fusion is supported."},
    {83, "CapsLowLatencyPipeline", nullptr, "The chosen preview pipeline is a low-latency one."},
    {84, "CapsVideoBelow4K", nullptr, "A video stream of 720 to 2159 lines."},
    {85, "CapsMLFTNodeExcluded", nullptr, "The video MLFT node is excluded in this mode."},
    {86, "CapsMipmapPreview", nullptr, "The mip-map preview path is on."},
    {87, "CapsMoonLayout", nullptr, "The request asks for the moon layout."},
    {88, "CapsSnapshotRaw12", nullptr, "The snapshot RAW format is RAW12."},
    {89, "CapsVIULL", nullptr, "AI noise reduction in low-light video for a client other than the system camera."},
    {90, "CapsVideoFrameInsert", nullptr, "Video frame insertion for this mode and video width."},
    {91, "CapsSnapshotLockMaster", nullptr, "Snapshots lock the master camera."},
    {92, "CapsCameraModeProVideoLog", nullptr, "The client's camera mode is pro_video_log_mode."},
    {93, "CapsCameraModeProVideo", nullptr, "The client's camera mode is pro_video_mode."},
    {94, "Caps3DLut", nullptr, "A professional video mode with the 3D LUT on."},
    {95, "CapsEquivalentFocallengthOverride", nullptr, "Tele-converter mode: the equivalent focal length is overridden."},
    {96, "CapsFlowControl", nullptr, "Flow control is enabled."},
    {97, "CapsViewFinderUseAsdFullFovPath", nullptr, "Tele-converter mode: the view finder uses the ASD full-FOV path."},
    {98, "CapsVideoHalWatermark", nullptr, "The HAL draws the video watermark."},
    {99, "CapsPreviewOis", nullptr, "A YUV preview with OIS: in an OIS mode, or for a third-party client."},
};

const _CapabilityRule kRules[] = {
    // ---- Stream roles ----
    {0, S, kEffectSets, STEP(ParseStreamsInfo), "an output stream with preview usage, a YUV-class format, not depth or HEIF, not taken as a view finder: EStreamTypePreview", STREAM_FACTS "; " VIEW_FINDER_INPUTS},
    {0, R | Q, kEffectSets, kUpdatePerRequestCaps, "the request carries a buffer of an EStreamTypePreview stream (camera bit on the buffer's physical camera)", BUFFER_INPUTS},
    {1, S, kEffectSets, STEP(ParseStreamsInfo), "without a video stream: an output YUV-class (or PRIVATE_2 usage) stream, not HEIF, without video usage and not a preview-usage YUV stream: EStreamTypeSnapshotYUV, or EStreamTypeSnapshotRAWFullYUV at width 6560 or height 4928", STREAM_FACTS "; stream:width; stream:height"},
    {1, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotYUV stream (EStreamTypeSnapshotRAWFullYUV sets nothing per request)", BUFFER_INPUTS},
    {2, S, kEffectSets, STEP(ParseStreamsInfo), "a BLOB stream with data space V0_JFIF or JFIF: EStreamTypeSnapshotJPEG", STREAM_FACTS},
    {2, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotJPEG stream", BUFFER_INPUTS},
    {3, S, kEffectSets, STEP(ParseStreamsInfo), "a RAW stream (RAW16 without usage 0x40 or a multispectral use case, RAW10, RAW12) that is neither short nor middle nor QCFA 2x2 nor full size: EStreamTypeSnapshotRAW", STREAM_FACTS "; stream:stream_use_case"},
    {3, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAW stream", BUFFER_INPUTS},
    {4, S, kEffectSets, STEP(ParseStreamsInfo), "a RAW stream with use case StreamUseCaseRawShort: EStreamTypeSnapshotRAWShort", STREAM_FACTS "; stream:stream_use_case"},
    {4, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAWShort stream", BUFFER_INPUTS},
    {5, S, kEffectSets, STEP(ParseStreamsInfo), "a RAW stream with use case StreamUseCaseRawMiddle: EStreamTypeSnapshotRAWMiddle", STREAM_FACTS "; stream:stream_use_case"},
    {5, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAWMiddle stream", BUFFER_INPUTS},
    {6, S | P, kEffectSets, STEP(ParseStreamsInfo), "EStreamTypeSnapshotRAWFull: a QCFA raw candidate on a QCFA sensor (a sensor mode with flag 0x800) at least as wide as the full array or the camera's custom full size, or use case StreamUseCaseRawFull; camera bit at the physical id of the stream's camera", STREAM_FACTS "; stream:width; stream:stream_use_case; stream:physical_camera_id; session:sensor mode flags and full array size; config:CustomRawFullSize"},
    {6, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAWFull stream", BUFFER_INPUTS},
    {7, S | P, kEffectSets, STEP(ParseStreamsInfo), "EStreamTypeSnapshotRAWQcfa2x2: a QCFA raw candidate on a QCFA sensor, on a camera with Caps2x2XCFA, at least half and less than the full array width; camera bit at the physical id of the stream's camera", STREAM_FACTS "; stream:width; stream:physical_camera_id; caps:59; session:sensor mode flags and full array size"},
    {7, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAWQcfa2x2 stream", BUFFER_INPUTS},
    {8, S, kEffectSets, STEP(ParseStreamsInfo), "a stream with video usage (HW_VIDEO_ENCODER or 0x80) and a data space other than HEIF: EStreamTypeVideo", STREAM_FACTS},
    {8, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeVideo stream", BUFFER_INPUTS},
    {9, S, kEffectSets, STEP(ParseStreamsInfo), "with a video stream configured: an output YUV-class (or PRIVATE_2) stream without video usage that is not a preview stream: EStreamTypeVideoLiveShot", STREAM_FACTS "; stream:width; stream:height"},
    {10, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV preview-usage stream of the ASD full-FOV size in a VideoASDOperationMode mode, of a view-finder size in a ViewFinderOperationMode mode, or 320x240 in mode 0x8001, 0x8009, 0x8019 or 0x80B4: EStreamTypeViewFinder", STREAM_FACTS "; stream:width; stream:height; " VIEW_FINDER_INPUTS},
    {10, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeViewFinder stream", BUFFER_INPUTS},
    {11, S, kEffectSets, STEP(ParseStreamsInfo), "in a VideoASDOperationMode mode, a stream of the ASD full-FOV size after a Video stream: EStreamTypeASDPreview", "stream:width; stream:height; config:AsdVideoOperationMode; config:AsdFullFovStreamInfo; caps:8"},
    {11, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeASDPreview stream", BUFFER_INPUTS},
    {12, S, kEffectSets, STEP(ParseStreamsInfo), "a stream with usage 0x40 that no other role took: EStreamTypeMetadata", STREAM_FACTS},
    {12, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeMetadata stream", BUFFER_INPUTS},
    {13, S, kEffectSets, STEP(ParseStreamsInfo), "a RAW16 stream with use case StreamUseCaseMultiSpectral or StreamUseCaseMultiSpectralAux: EStreamTypeMultiSpectralRaw", STREAM_FACTS "; stream:stream_use_case"},
    {13, R | Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeMultiSpectralRaw stream", BUFFER_INPUTS},

    // ---- SHDR and sensor mode bits ----
    {15, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "an SHDRTypeMatching row applies (value 0 = this framework camera id, value 1 = the operation mode, value 5 = -1 or the max fps); per camera: the camera's physical id in the row's mask (value 2)", SHDR_INPUTS},
    {16, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "an applying SHDRTypeMatching row with option (value 3) 1", SHDR_INPUTS},
    {17, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "an applying row of type 2 (value 4) while CapsSnapshotRaw12 is set; per camera also when the camera's physical id is outside the row's mask", SHDR_INPUTS "; caps:88"},
    {17, Q, kEffectSets, kUpdatePerRequestCaps, "the last result planned one exposure for the camera (video stream configured, opened from the main menu)", AEC_INPUTS},
    {18, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "set with CapsSHDR by an applying SHDRTypeMatching row", SHDR_INPUTS},
    {18, S | P, kEffectClears, STEP(ConfigSupportCapsSHDR), "an applying row of type 2 while CapsSnapshotRaw12 is set", SHDR_INPUTS "; caps:88"},
    {18, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 3, 4 or 7 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {18, Q, kEffectSets, kUpdatePerRequestCaps, "warm start dolState 2 from the main menu when the camera lacks session bit 22 but has 18; exposure count 2 when it lacks session bit 22", WARM_START_INPUTS "; " AEC_INPUTS "; caps:22"},
    {18, Q, kEffectClears, kUpdatePerRequestCaps, "the camera lacks session bit 15 (CapsSHDR), whatever set bit 18; or the last result planned one exposure", "caps:15; " AEC_INPUTS},
    {19, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 1, 4, 5, 7 or 11 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {19, Q, kEffectSets, kUpdatePerRequestCaps, "warm start rule: dolState 5 or 7 from the main menu, or dolState 7 in mode 0x8031 otherwise (warmStartEnable 1)", WARM_START_INPUTS "; operation-mode:0x8031"},
    {20, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 5, 6, 7 or 11 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {20, Q, kEffectSets, kUpdatePerRequestCaps, "warm start rule: dolState 7 from the main menu, or in mode 0x8031 otherwise (warmStartEnable 1)", WARM_START_INPUTS "; operation-mode:0x8031"},
    {21, P, kEffectSets, STEP(ParseStreamsInfo), "a full-size or 2x2 QCFA RAW stream on this camera", STREAM_FACTS "; stream:physical_camera_id"},
    {21, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 6 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {21, Q, kEffectSets, kUpdatePerRequestCaps, "a buffer of an EStreamTypeSnapshotRAWFull or EStreamTypeSnapshotRAWQcfa2x2 stream on this camera", BUFFER_INPUTS},
    {22, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "an applying SHDRTypeMatching row of type 1 (value 4)", SHDR_INPUTS},
    {22, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 8 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {22, Q, kEffectSets, kUpdatePerRequestCaps, "warm start dolState 2 (camera has session bit 22) or 3 from the main menu; exposure count 2 (camera has session bit 22) or 3", WARM_START_INPUTS "; " AEC_INPUTS "; caps:22"},
    {22, Q, kEffectClears, kUpdatePerRequestCaps, "the last result planned one exposure for the camera", AEC_INPUTS},
    {23, S | P, kEffectSets, STEP(ConfigSupportCapsSHDR), "an applying SHDRTypeMatching row of type 2 while CapsSnapshotRaw12 is set", SHDR_INPUTS "; caps:88"},
    {23, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 12 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},

    // ---- Frame rates and stream classes ----
    {25, S, kEffectSets, STEP(ParseSessionParams), "max fps of the AE target fps range is 60 (again when a Video stream is classified)", FPS_INPUT},
    {26, S, kEffectSets, STEP(ParseSessionParams), "max fps of the AE target fps range is 120 (again when a Video stream is classified)", FPS_INPUT},
    {27, S, kEffectSets, STEP(ParseSessionParams), "max fps of the AE target fps range is 240 (again when a Video stream is classified)", FPS_INPUT},
    {28, S, kEffectSets, STEP(ParseSessionParams), "max fps of the AE target fps range is 480 (again when a Video stream is classified)", FPS_INPUT},
    {29, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV-class preview output stream with ext_stream_mode 2 or more in mode 0x1, 0x800B, 0x8021, 0x8028, 0x80A9, 0x80AE, 0x80B5, 0x80B6 or 0x80B7", STREAM_FACTS "; stream:ext_stream_mode; operation-mode:0x1, 0x800B, 0x8021, 0x8028, 0x80A9, 0x80AE, 0x80B5, 0x80B6, 0x80B7"},
    {30, P, kEffectSets, STEP(ConfigureSensorDCGVSStreamingByCaps), "the camera's sensor name (physical id up to 15) is a key of EnableSensorDCGVS whose list holds the operation mode", "config:SensorDcgVs; operation-mode:any"},
    {30, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 9 or 10 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {30, Q, kEffectSets, kUpdatePerRequestCaps, "warm start dolState 4 from the main menu; exposure count 4", WARM_START_INPUTS "; " AEC_INPUTS},
    {31, Q, kEffectSets, kUpdatePerRequestCaps, "the zoom ratio is at least the camera's threshold (> 0) of XCFA2SwitchZoomRatio: position physical id + camera count - 1 on a single-camera session, else position physical id", "request-setting:ANDROID_CONTROL_ZOOM_RATIO; config:Xcfa2SwitchZoomRatio; session:numPhysicalCameras"},
    {32, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode, pro_video_log_mode or video_mode at max fps 120", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode, video_mode; " FPS_INPUT},
    {34, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV-class preview output stream or a video stream of height 2160 or more", STREAM_FACTS "; stream:height"},
    {35, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV-class preview output stream or a video stream of height 1080 to 2159", STREAM_FACTS "; stream:height"},
    {36, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV-class preview output stream or a video stream of height 720 to 1079", STREAM_FACTS "; stream:height"},
    {37, S, kEffectSets, STEP(ParseSessionParams), "camera mode super_text_mode or super_text_mode_v2", CAMERA_MODE_INPUT "; camera-mode:super_text_mode, super_text_mode_v2"},
    {38, S, kEffectSets, STEP(ConfigSupportCapsBokeh), "always, first", ""},
    {38, S, kEffectClears, STEP(ConfigSupportCapsBokeh), "a bokeh operation mode: 0x8010, 0x8011, 0x8030, 0x8031, 0x8035 or 0x8036", "operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036"},
    {39, S, kEffectSets, STEP(ParseSessionParams), "system camera client and no video stream (cleared first)", CLIENT_INPUTS "; stream:usage; stream:data_space"},
    {40, S | P, kEffectSets, STEP(ConfigAIAF), "an AIAFTouch2track row (exactly 2 values) with the operation mode and the camera's physical id bit in its mask; the session bit with any such camera", "config:AiafTouch2Track; operation-mode:any"},
    {41, S, kEffectSets, STEP(ParseSessionParams), "operation mode 0x80BE or 0x8009 (cleared first)", "operation-mode:0x80BE, 0x8009"},
    {42, S, kEffectSets, STEP(ParseSessionParams), "system camera client (package begins with SystemCamera, or camera unit)", CLIENT_INPUTS},
    {43, S, kEffectSets, STEP(ConfigSupportCapsSAT), "a bokeh session or exactly one physical camera", "operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036; session:numPhysicalCameras"},
    {44, S, kEffectSets, STEP(ConfigEISMode), "the unmasked operation mode is listed in PhotoRealtimeEIS/operationMode and the set has 2 or more physical cameras", "config:PhotoRealtimeEis; operation-mode:unmasked; session:numPhysicalCameras"},
    {45, S, kEffectSets, STEP(ConfigSupportCapsBokeh), "a bokeh operation mode: 0x8010, 0x8011, 0x8030, 0x8031, 0x8035 or 0x8036", "operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036"},
    {46, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode, pro_video_log_mode, video_mode or telephoto_video_mode", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode, video_mode, telephoto_video_mode"},
    {47, S, kEffectSets, STEP(ParseStreamsInfo), "a RAW stream (RAW16 without usage 0x40 or a multispectral use case, RAW10, RAW12); or a SnapshotYUV or SnapshotRAWFullYUV stream in mode 0x8001", STREAM_FACTS "; stream:stream_use_case; operation-mode:0x8001"},
    {48, S, kEffectSets, STEP(ParseSessionParams), "system camera client that is not the camera unit", CLIENT_INPUTS},
    {49, S, kEffectSets, STEP(ParseSessionParams), "camera mode video_mode at max fps 120", CAMERA_MODE_INPUT "; camera-mode:video_mode; " FPS_INPUT},
    {49, S, kEffectClears, STEP(ParseSessionParams), "camera mode pro_video_mode or pro_video_log_mode while the stabilisation mode is 0 (the previous configuration's: this one decides it later)", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode; session-param:ANDROID_CONTROL_VIDEO_STABILIZATION_MODE"},
    {49, S, kEffectSets, STEP(ConfigEISMode), "session parameter ANDROID_CONTROL_VIDEO_STABILIZATION_MODE non-zero", "session-param:ANDROID_CONTROL_VIDEO_STABILIZATION_MODE"},
    {49, S, kEffectSets, STEP(ConfigEISMode), "an EISTypeMatching row: value 0 = the operation mode and a later value = the set's camera name (a single camera's sensor name, 3SatR or 4SatR; a 2-camera set has none)", "config:EisTypeMatching; operation-mode:any; session:set camera name"},
    {49, S, kEffectClears, STEP(ConfigEISMode), "camera mode pro_video_mode with stabilisation mode 0, whatever set it", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode; session-param:ANDROID_CONTROL_VIDEO_STABILIZATION_MODE"},
    {50, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode or pro_video_log_mode", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode"},
    {51, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_log_mode", CAMERA_MODE_INPUT "; camera-mode:pro_video_log_mode"},
    {52, S, kEffectSets, STEP(ParseSessionParams), "engineer camera client and EngineercameraConfig/isNeedTwoCameraAlwaysOn true", "config:EngineerTwoCameraAlwaysOn; session-tag:34; config:EngineerModePackage"},
    {53, S, kEffectSets, STEP(ParseSessionParams), "a stream with usage 0x10000 or 0x80 and a data space other than HEIF", "stream:usage; stream:data_space"},
    {54, S, kEffectSets, kInitPackageName, "session tag com.tavro.is.sdk.camera.package (71) with a non-zero first byte", "session-tag:71"},
    {55, S, kEffectSets, kInitPackageName, "the package begins with PackageName Group/SystemCamera, or the client is the camera unit", CLIENT_INPUTS},
    {56, S, kEffectSets, kInitPackageName, "the package begins with neither PackageName Group/EngineerMode nor SystemCamera, and the client is not the camera unit", CLIENT_INPUTS},
    {57, S, kEffectSets, kInitPackageName, "the package begins with PackageName Group/ScanMode", "session-tag:34; config:ScanModePackage"},
    {58, S, kEffectSets, kInitPackageName, "the package begins with PackageName Group/EngineerMode", "session-tag:34; config:EngineerModePackage"},
    {59, P, kEffectSets, STEP(ConfigSupportCaps2x2QCFA), "OemRemosaicConfig/Enable2x2XCFA true and the camera's sensor name in 2x2XCFASensorNameList", "config:Enable2x2Xcfa; config:Xcfa2x2Sensors; session:sensor name of the camera"},
    {60, R, kEffectSets, kUpdatePerRequestCaps, "the session's operation mode is 0x8009 or 0x80BE (the session of the slot's last request with settings)", "operation-mode:0x8009, 0x80BE"},
    {61, S, kEffectSets, STEP(ParseSessionParams), "the VideoMLFTNode group is absent or its opertionMode list holds the operation mode, the camera mode is not pro_video_log_mode and the set does not have exactly one physical camera", "config:VideoMlftOperationMode; operation-mode:any; " CAMERA_MODE_INPUT "; camera-mode:pro_video_log_mode; session:numPhysicalCameras"},
    {62, S, kEffectSets, STEP(ParseSessionParams), "the unmasked operation mode is listed in OemCamSupportType/EnableSkipRawStream and the camera was opened from the main menu", "config:EnableSkipRawStream; operation-mode:unmasked; session-tag:109"},
    {63, S, kEffectSets, STEP(ParseSessionParams), "the unmasked operation mode is listed in OemCamSupportType/EnableReturnPrivateChiPhyMetaEarly", "config:EnableReturnPrivateChiPhyMetaEarly; operation-mode:unmasked"},
    {64, S, kEffectSets, STEP(ParseStreamsInfo), "ASDFeatureConfig/OverrideASDStreamDtSpace true", "config:AsdOverrideStreamDtSpace"},
    {65, S, kEffectSets, STEP(ConfigStarModeAEInfo), "operation mode 0x80A8 and StarMode/needOverrideAE true (kept from an earlier configuration otherwise)", "config:StarModeOverrideAe; operation-mode:0x80A8"},
    {66, S, kEffectSets, STEP(ParseSessionParams), "camera mode fine_food_mode", CAMERA_MODE_INPUT "; camera-mode:fine_food_mode"},
    {67, S, kEffectSets, STEP(ConfigSupportCapsBokeh), "a bokeh operation mode: 0x8010, 0x8011, 0x8030, 0x8031, 0x8035 or 0x8036", "operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036"},
    {68, S, kEffectSets, STEP(ConfigSupportCapsBokeh), "bokeh mode with 2 distinct physical preview cameras and BokehSATConfig/supportStartWithFallback, or with 3", "config:BokehStartWithFallback; stream:physical_camera_id; stream:usage; stream:format; stream:data_space; operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036"},
    {69, S, kEffectSets, STEP(ConfigSupportCapsBokeh), "bokeh mode with 3 distinct physical preview cameras", "stream:physical_camera_id; stream:usage; stream:format; stream:data_space; operation-mode:0x8010, 0x8011, 0x8030, 0x8031, 0x8035, 0x8036"},
    {70, S, kEffectSets, STEP(ParseSessionParams), "camera mode gr_mode", CAMERA_MODE_INPUT "; camera-mode:gr_mode"},
    {71, S, kEffectSets, STEP(ParseStreamsInfo), "the client is not the system camera", CLIENT_INPUTS},
    {72, P, kEffectSets, STEP(ConfigSupportCapsProVideoIZoom), "camera mode pro_video_mode or pro_video_log_mode and the camera's physical id (mod 32) outside InsensorZoom/supportProVideoIZoomCamIdMask", "config:ProVideoIzoomCamIdMask; " CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode"},
    {72, P, kEffectClears, STEP(ConfigSupportCapsProVideoIZoom), "a professional video camera mode and the camera's physical id inside the mask", "config:ProVideoIzoomCamIdMask; " CAMERA_MODE_INPUT},
    {73, S, kEffectSets, kInitPackageName, "the package begins with PackageName Group/ctsVerifier", "session-tag:34; config:CtsVerifierPackage"},
    {74, S, kEffectSets, STEP(ParseStreamsInfo), "the client is not the system camera", CLIENT_INPUTS},
    {75, P, kEffectSets, STEP(ConfigSupportCaps2x2QCFA), "as Caps2x2XCFA, and OemRemosaicConfig/4x4XCFADisableMultiFrame true", "config:Enable2x2Xcfa; config:Xcfa2x2Sensors; config:Xcfa4x4DisableMultiFrame; session:sensor name of the camera"},
    {76, S, kEffectSets, kInitPackageName, "some stream has ext_stream_mode 2", "stream:ext_stream_mode"},
    {77, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode or pro_video_log_mode, or operation mode 0x80BE or 0x8009", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode; operation-mode:0x80BE, 0x8009"},
    {78, S, kEffectSets, STEP(ParseStreamsInfo), "a YCBCR_P010 preview stream while the operation mode is listed in OemCommonCapbility/CaptureHdrSupportOpMode", STREAM_FACTS "; config:CaptureHdrSupportOpMode; operation-mode:any"},
    {79, P, kEffectSets, STEP(ParseStreamsInfo), "a generic system image or an OisCloseOcsApp client, and the camera's physical id among the first five of OIS/OisCtsCloseOcs", "config:OisCtsCloseOcs; config:OisCloseOcsApp; session-tag:34; property:ro.product.brand; property:ro.product.system.brand; property:ro.build.product"},
    {80, P, kEffectSets, STEP(ParseStreamsInfo), "the package begins with a string of PackageName Group/OisCenterOnApp: every camera", "config:OisCenterOnApp; session-tag:34"},
    {81, P, kEffectSets, STEP(ConfigSupportCaps2x2QCFA), "the camera's sensor name in OemRemosaicConfig/4x4IZOOMPSensorNameList (Caps4x4Izoom)", "config:Izoom4x4Sensors; session:sensor name of the camera"},
    {81, R | Q, kEffectSets, kUpdatePerRequestCaps, "sensor mode list value 11 for the camera (primary caps only on a single-camera session)", MODE_LIST_INPUTS},
    {82, S, kEffectSets, STEP(ParseSessionParams), "operation mode 0x8001, 0x8009 or 0x8019 and 2 or more physical cameras", "operation-mode:0x8001, 0x8009, 0x8019; session:numPhysicalCameras"},
    {83, S, kEffectClears, STEP(SelectLowlatencyPipeline), "always, first", ""},
    {83, S, kEffectSets, STEP(SelectLowlatencyPipeline), "an OPreviewPipelines row of the operation mode and logical camera (or 255) with 4 or more values and a non-zero low-latency flag, and OemDecouplePipelines/isSupportLowLatency true", "config:PreviewPipelines; config:SupportLowLatency; operation-mode:any; session:logical camera id"},
    {84, S, kEffectSets, STEP(ParseStreamsInfo), "a video stream of height 720 to 2159", "stream:usage; stream:data_space; stream:height"},
    {85, S, kEffectSets, STEP(ParseSessionParams), "the VideoMLFTNode group has keys and its opertionMode list lacks the operation mode (or cannot be read)", "config:VideoMlftOperationMode; operation-mode:any"},
    {85, S, kEffectClears, STEP(ParseSessionParams), "the VideoMLFTNode group is absent or its opertionMode list holds the operation mode", "config:VideoMlftOperationMode; operation-mode:any"},
    {86, S, kEffectSets, STEP(SelectLowlatencyPipeline), "OemDecouplePipelines/isSupportLowLatency and isEnableMIPMAP true and no Video stream", "config:SupportLowLatency; config:EnableMipmap; caps:8"},
    {87, R, kEffectSets, kParseOriginalRequestSetting, "request tag 159 (PIP sensor) equal to 1 while the scene value (tag 38, possibly carried over in the slot) is 29 or 30", "request-tag:159; request-tag:38"},
    {88, S, kEffectSets, STEP(ParseSessionParams), "a RAW12 stream and session tag 161 absent or containing RAW12", "stream:format; session-tag:161"},
    {89, S, kEffectSets, STEP(ConfigSupportCapsAINR), "a client other than the system or engineer camera (or the camera unit) with VIULL on for the logical camera's mask bit: 3rdAppEnableVIULL, overridden by 3rdAppDisableVIULLMap for the package, overridden by 3rdAppEnableVIULLMapLumora for package and activity; off with an HDR10, HDR10+ or HLG10 stream under disableVIULLForSpecificHDR", "config:ViullEnable; config:ViullDisableMap; config:ViullEnableMap; config:DisableViullForHdr; " CLIENT_INPUTS "; session-tag:105; stream:dynamic_range_profile; session:logical camera id"},
    {90, S, kEffectSets, STEP(ParseSessionParams), "a VideoFrameInsertSupport row (2 or more values) with the unmasked operation mode and a video stream's width, outside the professional video modes", "config:VideoFrameInsert; operation-mode:unmasked; stream:width; stream:usage; stream:data_space; " CAMERA_MODE_INPUT},
    {91, S, kEffectSets, STEP(ParseSessionParams), "OemCamSettings/SupportSnaphotLockMaster true", "config:SupportSnapshotLockMaster"},
    {92, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_log_mode", CAMERA_MODE_INPUT "; camera-mode:pro_video_log_mode"},
    {93, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode"},
    {94, S, kEffectSets, STEP(ParseSessionParams), "camera mode pro_video_mode or pro_video_log_mode with the 3D LUT on: OemCommonCapbility/Enable3DLut, overridden by persist.vendor.camera.3dlut.enable unless it is -1", CAMERA_MODE_INPUT "; camera-mode:pro_video_mode, pro_video_log_mode; config:Enable3DLut; property:persist.vendor.camera.3dlut.enable"},
    TELE_CONVERTER_RULES(95),
    {96, S, kEffectSets, STEP(ConfigSupportCapsFlowControl), "FlowControl/isEnableFlowControl true", "config:EnableFlowControl"},
    TELE_CONVERTER_RULES(97),
    {98, S, kEffectSets, STEP(ConfigVideoWatermarkEnable), "session tag 147 (video watermark) non-zero and TavroVideoWaterMarkParams/videoHalWatermarkEnable true", "session-tag:147; config:VideoHalWatermark"},
    {99, S, kEffectSets, STEP(ParseStreamsInfo), "a YUV-class preview output stream while the operation mode is listed in OIS/operationMode, or the client is a third party (not the system camera, not a generic system image, not ctsCamera)", STREAM_FACTS "; config:OisOperationMode; operation-mode:any; " CLIENT_INPUTS "; config:CtsCameraPackage; property:ro.product.brand; property:ro.product.system.brand; property:ro.build.product"},
};
// clang-format on

// The text of each CapabilityInputKind, in its order.
constexpr const char* kInputKindTexts[] = {
    "config",          "property",   "session-tag",    "session-param", "request-tag",
    "request-setting", "result-tag", "operation-mode", "camera-mode",   "client",
    "stream",          "request",    "caps",           "session",       "file",
};
static_assert(sizeof(kInputKindTexts) / sizeof(kInputKindTexts[0]) == kInputFile + 1,
              "one text per input kind");

}  // namespace

const _Capability* Capabilities() {
    return kCapabilities;
}

const _CapabilityRule* CapabilityRules() {
    return kRules;
}

size_t CapabilityRuleCount() {
    return sizeof(kRules) / sizeof(kRules[0]);
}

std::string ConfigKeyText(EConfigKey id) {
    const _ConfigKey& key = Key(id);
    switch (key.form) {
        case EConfigKeyForm::Single:
            return key.key;
        case EConfigKeyForm::Rows:
            return std::string(key.key) + "[i]";
        case EConfigKeyForm::NamedByKey:
            return std::string(key.key) + "[sensor]";
        case EConfigKeyForm::AnyKey:
            return "<sensor name>";
        case EConfigKeyForm::NamedRows:
        case EConfigKeyForm::NamedSingleRow:
            return "<package>[i]";
        case EConfigKeyForm::SensorModeKey:
            break;
    }
    return "<sensor>[mask][mode]";
}

std::string ConfigKeyPath(EConfigKey key) {
    return std::string(Key(key).group) + "/" + ConfigKeyText(key);
}

int FindCapability(const std::string& name) {
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
        const _Capability& capability = Capabilities()[bit];
        if ((capability.name != nullptr && name == capability.name) ||
            (capability.otherName != nullptr && name == capability.otherName)) {
            return static_cast<int>(bit);
        }
    }
    return -1;
}

std::vector<const _CapabilityRule*> RulesOf(uint32_t bit) {
    std::vector<const _CapabilityRule*> rules;
    for (size_t i = 0; i < CapabilityRuleCount(); ++i) {
        if (CapabilityRules()[i].bit == bit) {
            rules.push_back(&CapabilityRules()[i]);
        }
    }
    return rules;
}

uint8_t ScopesOf(uint32_t bit) {
    uint8_t scopes = 0;
    for (const _CapabilityRule* rule : RulesOf(bit)) {
        scopes = static_cast<uint8_t>(scopes | rule->scope);
    }
    return scopes;
}

std::vector<_CapabilityInput> ParseInputs(const _CapabilityRule& rule) {
    std::vector<_CapabilityInput> inputs;
    const std::string text = rule.inputs != nullptr ? rule.inputs : "";
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find("; ", start);
        if (end == std::string::npos) {
            end = text.size();
        }
        const std::string item = text.substr(start, end - start);
        start = end + 2;
        const size_t colon = item.find(':');
        if (colon == std::string::npos) {
            continue;
        }
        const auto* const none = std::end(kInputKindTexts);
        const auto* known = std::find(std::begin(kInputKindTexts), none, item.substr(0, colon));
        if (known == none) {
            continue;
        }
        _CapabilityInput input;
        input.kind = static_cast<CapabilityInputKind>(known - std::begin(kInputKindTexts));
        input.value = item.substr(colon + 1);
        if (input.kind == kInputConfig) {
            const size_t id =
                std::find(kConfigKeyIds, kConfigKeyIds + kConfigKeyCount, input.value) -
                kConfigKeyIds;
            if (id == kConfigKeyCount) {
                continue;
            }
            input.configKey = static_cast<EConfigKey>(id);
            input.group = kConfigKeys[id].group;
            input.key = ConfigKeyText(input.configKey);
            input.value = ConfigKeyPath(input.configKey);
        }
        inputs.push_back(input);
    }
    return inputs;
}

const char* ScopeText(CapabilityScope scope) {
    switch (scope) {
        case kScopeSessionLogical:
            return "session logical";
        case kScopeSessionPhysical:
            return "session physical";
        case kScopeRequestLogical:
            return "request logical";
        case kScopeRequestPhysical:
            return "request physical";
    }
    return "";
}

const char* InputKindText(CapabilityInputKind kind) {
    return kInputKindTexts[kind];
}

}  // namespace Lumora
