#include "SessionRunner.h"

#include <CameraHWConfiguration.h>
#include <HostKit/Capture.h>
#include <HostPlatform.h>
#include <HostPlatformExtras.h>
#include <cutils/properties.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

#include "common/StreamPredicates.h"
#include "common/VendorTags.h"

namespace UilayerFuzz {

const char* const kPropertyNames[] = {
    "vendor.debug.camera.policy.debugEnable",
    "vendor.debug.camera.policy.sensormode",
    "vendor.debug.camera.policy.genericCam",
    "persist.vendor.camera.3dlut.enable",
    "persist.vendor.camera.sat.enable.fallbackdetect",
    "persist.vendor.camera.sat.enable.fallbackdebug",
    "ro.product.brand",
    "ro.build.product",
    "ro.product.system.brand",
};
const uint8_t kPropertyCount = sizeof(kPropertyNames) / sizeof(kPropertyNames[0]);

namespace {

// Results of the queries end here, so that nothing is optimised away.
volatile uint64_t g_sink = 0;

void Sink(uint64_t value) {
    g_sink = g_sink + value;
}

uint32_t TagId(bool vendor, uint32_t tag) {
    if (!vendor) {
        return tag;
    }
    return GetVendorTagId != nullptr ? GetVendorTagId(tag) : 0;
}

bool IsBokehMode(uint32_t mode) {
    switch (mode & 0xF0FFu) {
        case 0x8010:
        case 0x8011:
        case 0x8030:
        case 0x8031:
        case 0x8035:
        case 0x8036:
            return true;
        default:
            return false;
    }
}

// Whether a listed third-app client may be switched into a bokeh mode: any
// value of the override rows that reads as such a mode counts.
bool OverrideMayGiveBokeh() {
    static constexpr const char* kGroup = "ThirdAppOperationModeOverride";
    const uint32_t rows = GetKeyCount(kGroup);
    for (uint32_t i = 0; i < rows; ++i) {
        char index[16];
        snprintf(index, sizeof(index), "%u", i);
        const uint32_t count = GetLocaleKeyValuesCount(kGroup, "scene", index);
        std::vector<char*> values(count, nullptr);
        if (count == 0 ||
            GetLocaleStringListConfiguration(kGroup, "scene", index, values.data(), count) != 0) {
            continue;
        }
        for (const char* value : values) {
            unsigned int mode = 0;
            if (value != nullptr && sscanf(value, "%x", &mode) == 1 && IsBokehMode(mode)) {
                return true;
            }
        }
    }
    return false;
}

// The preview stream of a physical camera, as a bokeh session counts them.
bool IsPhysicalPreview(const camera3_stream_t& s) {
    return Lumora::IsPreviewYuv(s) && Lumora::HasPhysicalCameraId(s);
}

void TouchList(const std::vector<Lumora::_UIStreamInfo>* list) {
    if (list == nullptr) {
        return;
    }
    for (const Lumora::_UIStreamInfo& info : *list) {
        Sink(info.streamIndex + static_cast<uint32_t>(info.phyCameraId));
        if (info.pStream != nullptr) {
            Sink(info.pStream->width);
        }
    }
}

// A property every answer of the library keeps; a broken one is a finding.
void Expect(bool condition, const char* what) {
    if (!condition) {
        fprintf(stderr, "fuzz_session: %s\n", what);
        abort();
    }
}

void TouchText(const char* text) {
    if (text != nullptr) {
        Sink(strlen(text));
    }
}

}  // namespace

size_t ElementSize(bool vendor, uint32_t tag) {
    const int type = get_camera_metadata_tag_type(TagId(vendor, tag));
    return type > 0 && type < NUM_TYPES ? camera_metadata_type_size[type] : 1;
}

namespace {

// Adds an entry as the platform does; a short byte run (the input ended) holds
// fewer elements than asked for, and an entry the store refuses is left out.
void Append(HostKit::Metadata& metadata, const TagEntry& entry) {
    const size_t size = ElementSize(entry.vendor, entry.tag);
    const size_t count = std::min<size_t>(entry.count, entry.data.size() / size);
    metadata.Append(TagId(entry.vendor, entry.tag), count > 0 ? entry.data.data() : nullptr, count);
}

std::vector<std::string>& WrittenFiles() {
    static std::vector<std::string> written;
    return written;
}

void Write(const std::string& devicePath, const std::string& text) {
    Root().WriteFile(devicePath, text);
    WrittenFiles().push_back(devicePath);
}

}  // namespace

// ---------------- Device root ----------------

HostKit::DeviceRoot& Root() {
    static HostKit::DeviceRoot root(HostKit::DefaultSiblingRoot(), "uilayer-fuzz");
    root.Activate();
    return root;
}

void WriteFiles(const SessionInput& in) {
    for (const std::string& path : WrittenFiles()) {
        Root().RemoveFile(path);
    }
    WrittenFiles().clear();
    if (in.hasWireless) {
        Write("/sys/class/power_supply/wireless/online", in.wireless);
    }
    for (const FileInput& file : in.warmStartFiles) {
        Write("/data/vendor/camera/aecWarmStartCamera_" +
                  std::to_string(static_cast<int>(file.physicalId)) + ".txt",
              file.text);
    }
}

// ---------------- Device ----------------

std::vector<HostKit::CameraSetup> CamerasOf(const std::vector<CameraInput>& cameras) {
    std::vector<HostKit::CameraSetup> setups;
    for (const CameraInput& in : cameras) {
        HostKit::CameraSetup setup;
        setup.hasRecord = in.hasRecord;
        setup.shortRecord = in.shortRecord;
        setup.frameworkId = in.frameworkId;
        setup.logicalCamId = in.logicalCamId;
        setup.physicalCameras = in.entries;
        setup.numPhysicalCameras = in.numPhysicalCameras;
        setup.hasSensorName = in.hasSensorName;
        setup.sensorName = in.sensorName;
        setup.type = in.type;
        setup.fullArrayWidth = in.fullArrayWidth;
        setup.fullArrayHeight = in.fullArrayHeight;
        setup.numSensorModes = in.numSensorModes;
        setup.sensorModeFlags = in.sensorModeFlags;
        setups.push_back(setup);
    }
    return setups;
}

// ---------------- Configuration ----------------

Configuration::Configuration(const SessionInput& in) : m_config(in.operationMode) {
    for (const StreamInput& s : in.streams) {
        if (s.null) {
            m_config.AddNull();
            continue;
        }
        HostKit::StreamSetup stream = s;
        stream.hasPhysicalId = s.physicalIdKind != kIdNull;
        stream.physicalId = s.physicalIdKind == kIdText ? s.physicalId : "";
        m_config.Add(stream);
    }
    for (const TagEntry& tag : in.sessionParams) {
        Append(m_config.SessionParams(), tag);
    }
    if (in.nullSessionParams) {
        m_config.WithoutSessionParams();
    }
    m_stranger.width = 4000;
    m_stranger.height = 3000;
    m_stranger.format = 0x21;
    m_stranger.physical_camera_id = "99999999999999999999";
    if (!KeepBokehSessionsRunnable(in) && in.nullStreamArray) {
        m_config.WithoutStreamArray();
    }
}

// A bokeh session with other than two or three physical preview cameras stops
// the process on purpose. Whenever the session may end up in a bokeh mode,
// the streams are made to give two such cameras (or kept at three).
bool Configuration::KeepBokehSessionsRunnable(const SessionInput& in) {
    if (in.nullSessionParams || (!IsBokehMode(in.operationMode) && !OverrideMayGiveBokeh())) {
        return false;
    }
    std::set<int> distinct;
    for (camera3_stream_t* stream : m_config.Streams()) {
        if (stream != nullptr && IsPhysicalPreview(*stream)) {
            distinct.insert(atoi(stream->physical_camera_id));
        }
    }
    if (distinct.size() == 2 || distinct.size() == 3) {
        return true;
    }
    // More than three: the cameras after the first two lose their physical id.
    std::set<int> keep;
    for (camera3_stream_t* stream : m_config.Streams()) {
        if (stream == nullptr || !IsPhysicalPreview(*stream)) {
            continue;
        }
        const int id = atoi(stream->physical_camera_id);
        if (keep.size() < 2) {
            keep.insert(id);
        }
        if (keep.count(id) == 0) {
            stream->physical_camera_id = "";
        }
    }
    // Fewer than two: preview streams of unused ids are added.
    for (int id = 0; keep.size() < 2; ++id) {
        if (keep.count(id) != 0) {
            continue;
        }
        keep.insert(id);
        HostKit::StreamSetup stream = HostKit::PreviewStream(1920, 1080, std::to_string(id));
        stream.format = 35;
        stream.dynamicRangeProfile = 0;
        m_config.Add(stream);
    }
    return true;
}

// ---------------- Platform ----------------

void PreparePlatform(const SessionInput& in) {
    HostPlatform::ResetProperties();
    for (const PropertyInput& property : in.properties) {
        property_set(kPropertyNames[property.name % kPropertyCount], property.value.c_str());
    }
    const uint8_t s = in.logSwitches;
    HostPlatform::SetLogSwitches(s & 1, s & 2, s & 4, s & 8, s & 16);
    // A refused text leaves the store empty rather than as the last input left it.
    HostPlatform::LoadConfiguration("");
    HostPlatform::LoadConfiguration(in.configText.c_str());
}

void DrainLogs() {
    HostPlatform::TakeAndroidLog();
    HostPlatform::TakeCameraLog();
    HostPlatform::TakeSwitchLogEnableCalls();
}

// ---------------- Steps ----------------

namespace {

camera3_stream_t* StreamRef(Configuration& config, uint8_t ref) {
    const std::vector<camera3_stream_t*>& streams = config.Streams();
    if (ref < streams.size()) {
        return streams[ref];
    }
    return ref % 2 == 0 ? config.Stranger() : nullptr;
}

void RunRequest(Lumora::IuiLayer& parser, Configuration& config, const Step& step) {
    HostKit::Request request(step.frame);
    if (step.hasMetadata) {
        HostKit::Metadata& settings = request.Settings();
        for (const TagEntry& tag : step.tags) {
            Append(settings, tag);
        }
    }
    for (const BufferInput& buffer : step.buffers) {
        request.Buffer(StreamRef(config, buffer.stream));
    }
    if (step.nullBufferArray) {
        request.WithoutBufferArray();
    }
    Sink(static_cast<uint32_t>(parser.UpdatePerRequestCaps(request.Get())));
}

void RunResult(Lumora::IuiLayer& parser, const Step& step) {
    HostKit::Result result(step.frame, step.hasMetadata);
    if (step.hasMetadata) {
        if (step.hasAec) {
            // The records as given, not padded to eight, and maybe cut short.
            const std::vector<HostKit::AecRecord>& records = step.aec;
            size_t bytes = records.size() * sizeof(HostKit::AecRecord);
            if (step.aecBytes > 0 && step.aecBytes < bytes) {
                bytes = step.aecBytes;
            }
            result.Meta().Append(TagId(true, Lumora::kTagExposureCountList),
                                 bytes > 0 ? records.data() : nullptr, bytes);
        }
        if (step.hasMlft) {
            result.Mlft(step.mlft, step.mlftBytes);
        }
        for (const TagEntry& tag : step.tags) {
            Append(result.Meta(), tag);
        }
    }
    Sink(static_cast<uint32_t>(parser.UpdateResultAppliedCaps(result.Get())));
}

void RunAccessors(Lumora::IuiLayer& parser) {
    TouchText(parser.GetPipelineName());
    TouchText(parser.GetPackageName());
    TouchText(parser.GetActivityName());
    TouchText(parser.GetCameraMode());
    Sink(parser.IsDisableAePrecaptureTriggerForSnapshot());
    Sink(parser.GetVideoStabMode());
    const Lumora::_SensorDimension* rows = parser.GetSensorDimension();
    for (int i = 0; rows != nullptr && i < 8; ++i) {
        Sink(rows[i].physicalCamId + rows[i].width + rows[i].height);
    }
    const Lumora::StarModeAEInfo* star = parser.GetStarModeAEInfo();
    Sink(static_cast<uint64_t>(star->aeMode + star->sensitivity + star->expTime));
    const Lumora::_SatStaticCaps* sat = parser.GetSatStaticCaps();
    Sink(sat->fallbackUsecase + sat->zoomDivisionCurveCfgPrefix.size());
}

}  // namespace

void RunSteps(Lumora::IuiLayer& parser, Configuration& config, const std::vector<Step>& steps) {
    using Lumora::DesiredSupportCaps;
    using Lumora::QueryCapsType;
    using Lumora::QueryTuningType;
    using Lumora::StreamType;
    for (const Step& step : steps) {
        const auto caps = static_cast<DesiredSupportCaps>(step.caps % 100);
        const auto type = static_cast<QueryCapsType>(step.type);
        switch (step.kind) {
            case kStepRequest:
                RunRequest(parser, config, step);
                break;
            case kStepResult:
                RunResult(parser, step);
                break;
            case kStepReconfigure:
                parser.ParseStaticCapabilities(config.Get());
                parser.ParseStreamCapabilities(config.Get());
                break;
            case kStepSessionCaps:
                Sink(parser.IsSessionSupportCaps(caps, type));
                break;
            case kStepCapsMask: {
                Lumora::_CapsBitset mask;
                parser.GetStaticCapsMask(type, mask);
                // The mask holds only capabilities the session supports.
                for (size_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
                    Expect(!mask.test(bit) || parser.IsSessionSupportCaps(
                                                  static_cast<DesiredSupportCaps>(bit), type),
                           "the caps mask holds a capability the session does not support");
                }
                break;
            }
            case kStepStreamLists: {
                const std::vector<Lumora::_UIStreamInfo>* list =
                    parser.GetStreamByStreamType(static_cast<StreamType>(step.streamType));
                Expect(list != nullptr, "no stream list");
                Expect(step.streamType >= 0 && step.streamType < Lumora::EStreamTypeMax
                           ? true
                           : list->empty(),
                       "a stream type outside the roles has streams");
                for (const Lumora::_UIStreamInfo& info : *list) {
                    Expect(parser.GetStreamTypeByStream(info.pStream) ==
                               static_cast<StreamType>(step.streamType),
                           "a listed stream has another role");
                }
                TouchList(parser.GetStreamByStreamType(step.frame,
                                                       static_cast<StreamType>(step.streamType)));
                break;
            }
            case kStepStreamQueries: {
                camera3_stream_t* stream = StreamRef(config, step.streamRef);
                Sink(static_cast<uint32_t>(parser.GetFwkCameraIdByStream(stream)));
                Sink(static_cast<uint32_t>(parser.GetCameraIndexByStream(stream)));
                Sink(static_cast<uint32_t>(parser.GetStreamTypeByStream(stream)));
                Sink(static_cast<uint32_t>(parser.GetFwkCameraIdByCameraIndex(step.frame)));
                break;
            }
            case kStepRequestQueries:
                // The single bit and the whole set of a frame agree.
                Expect(parser.IsRequestSupportCaps(step.frame, caps, type) ==
                           parser.GetRequestSupportCaps(step.frame, type).test(caps),
                       "a request capability and the request's caps set disagree");
                Sink(parser.GetOriginalRequestTuningMode(step.frame,
                                                         static_cast<QueryTuningType>(step.type)));
                TouchList(parser.GetStreamByStreamType(step.frame,
                                                       static_cast<StreamType>(step.streamType)));
                break;
            case kStepSensorMode: {
                signed char index = 0;
                Sink(static_cast<uint32_t>(parser.GetSensorModeIndexByCaps(
                    Lumora::_CapsBitset(step.capsLow, step.capsHigh), type, index)));
                Sink(static_cast<uint8_t>(index));
                break;
            }
            case kStepWarmStart: {
                unsigned int enable = 0;
                int dolState = 0;
                parser.GetWarmStartStateByCaps(step.type, enable, dolState);
                Sink(enable + static_cast<uint32_t>(dolState));
                break;
            }
            case kStepAccessors:
                RunAccessors(parser);
                break;
            case kStepRemapZoomRatio: {
                std::vector<char> name(step.text.begin(), step.text.end());
                name.push_back('\0');
                const float ratio =
                    parser.ProcessRemapZoomRatio(step.nullText ? nullptr : name.data(), step.skip);
                Sink(static_cast<uint64_t>(ratio > 0.0f));
                break;
            }
            default:
                break;
        }
    }
}

void RunSession(const SessionInput& in) {
    PreparePlatform(in);
    WriteFiles(in);
    {
        HostKit::CameraTable device(CamerasOf(in.cameras));
        device.Init();
        Configuration config(in);
        std::shared_ptr<Lumora::IuiLayer> parser = Lumora::IuiLayer::Get(in.cameraId);
        parser->ParseStaticCapabilities(config.Get());
        parser->ParseStreamCapabilities(config.Get());
        RunSteps(*parser, config, in.steps);
    }
    DrainLogs();
}

}  // namespace UilayerFuzz
