#include "SessionRunner.h"

#include <CameraHWConfiguration.h>
#include <HostPlatform.h>
#include <HostPlatformExtras.h>
#include <LumoraCameraInfo.h>
#include <cutils/properties.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

#include "common/StreamPredicates.h"

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

constexpr uint32_t kTagCameraInfo = 5;
constexpr uint32_t kTagExposureCountList = 156;
constexpr uint32_t kTagMlftParameters = 175;
constexpr size_t kMlftSwitchOffset = 1800;

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
    switch (get_camera_metadata_tag_type(TagId(vendor, tag))) {
        case TYPE_INT32:
        case TYPE_FLOAT:
            return 4;
        case TYPE_INT64:
        case TYPE_DOUBLE:
        case TYPE_RATIONAL:
            return 8;
        default:
            return 1;
    }
}

// ---------------- Metadata ----------------

Metadata::Metadata() : m_metadata(allocate_camera_metadata(64, 32768)) {}

Metadata::~Metadata() {
    free_camera_metadata(m_metadata);
}

void Metadata::Add(uint32_t tagId, const void* data, size_t count) {
    add_camera_metadata_entry(m_metadata, tagId, count > 0 ? data : nullptr, count);
}

void Metadata::Add(const TagEntry& entry) {
    // A short byte run (the input ended) holds fewer elements than asked for.
    const size_t size = ElementSize(entry.vendor, entry.tag);
    const size_t count = std::min<size_t>(entry.count, entry.data.size() / size);
    Add(TagId(entry.vendor, entry.tag), entry.data.data(), count);
}

// ---------------- Device root ----------------

DeviceRoot& DeviceRoot::Instance() {
    static DeviceRoot* root = new DeviceRoot();
    return *root;
}

DeviceRoot::DeviceRoot() {
    char pattern[] = "/tmp/uilayer-fuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    if (made == nullptr) {
        perror("mkdtemp");
        abort();
    }
    m_path = made;
    for (const char* dir :
         {"/odm", "/odm/lib64", "/odm/lib64/hw", "/data", "/data/vendor", "/data/vendor/camera",
          "/sys", "/sys/class", "/sys/class/power_supply", "/sys/class/power_supply/wireless"}) {
        mkdir((m_path + dir).c_str(), 0700);
    }
    const std::string sibling =
        std::string(UILAYER_FUZZ_SIBLING_ROOT) + "/odm/lib64/hw/camera.lumora.v2.so";
    if (symlink(sibling.c_str(), (m_path + "/odm/lib64/hw/camera.lumora.v2.so").c_str()) != 0) {
        perror("symlink");
        abort();
    }
    setenv("UILAYER_DEVICE_ROOT", m_path.c_str(), 1);
    // The directory goes with the process (a crash leaves it for inspection).
    atexit([] {
        const std::string path = DeviceRoot::Instance().m_path;
        const std::string command = "rm -rf '" + path + "'";
        if (system(command.c_str()) != 0) {
            fprintf(stderr, "could not remove %s\n", path.c_str());
        }
    });
}

void DeviceRoot::Write(const std::string& relative, const std::string& text) {
    const std::string path = m_path + relative;
    FILE* file = fopen(path.c_str(), "w");
    if (file == nullptr) {
        return;
    }
    fwrite(text.data(), 1, text.size(), file);
    fclose(file);
    m_written.push_back(path);
}

void DeviceRoot::WriteFiles(const SessionInput& in) {
    for (const std::string& path : m_written) {
        unlink(path.c_str());
    }
    m_written.clear();
    if (in.hasWireless) {
        Write("/sys/class/power_supply/wireless/online", in.wireless);
    }
    for (const FileInput& file : in.warmStartFiles) {
        char name[96];
        snprintf(name, sizeof(name), "/data/vendor/camera/aecWarmStartCamera_%d.txt",
                 static_cast<int>(file.physicalId));
        Write(name, file.text);
    }
}

// ---------------- Device ----------------

Device::Device(const std::vector<CameraInput>& cameras) {
    // The vendor tag lookup is resolved by Init; the records need it.
    Lumora::IuiLayer::Init(0, nullptr);
    m_table.assign(cameras.size(), camera_info{});
    for (size_t i = 0; i < cameras.size(); ++i) {
        const CameraInput& in = cameras[i];
        m_characteristics.push_back(std::make_unique<Metadata>());
        m_table[i].static_camera_characteristics = m_characteristics.back()->Get();
        if (!in.hasRecord) {
            continue;
        }
        LumoraCameraInfo record = {};
        record.logicalCamId = in.logicalCamId;
        record.frameworkId = in.frameworkId;
        record.numPhysicalCameras = in.numPhysicalCameras;
        for (size_t k = 0; k < in.entries.size() && k < LUMORA_MAX_PHYSICAL_CAMERAS; ++k) {
            record.cameraEntry[k].logicalCamId = in.entries[k].logicalCamId;
            record.cameraEntry[k].frameworkId = in.entries[k].frameworkId;
            record.cameraEntry[k].physicalCamId = in.entries[k].physicalCamId;
            record.cameraEntry[k].isPrimary = in.entries[k].isPrimary;
        }
        record.type = in.type;
        record.fullArrayWidth = in.fullArrayWidth;
        record.fullArrayHeight = in.fullArrayHeight;
        record.numSensorModes = in.numSensorModes;
        for (size_t m = 0; m < in.sensorModeFlags.size() && m < LUMORA_MAX_SENSOR_MODES; ++m) {
            record.sensorModes[m].flags = in.sensorModeFlags[m];
        }
        if (in.hasSensorName) {
            m_sensorNames.push_back(in.sensorName);
            record.sensorName = m_sensorNames.back().c_str();
        }
        const size_t size = in.shortRecord ? sizeof(record) / 2 : sizeof(record);
        m_characteristics.back()->Add(TagId(true, kTagCameraInfo), &record, size);
    }
}

Device::~Device() {
    // No parser may outlive the table it reads.
    Lumora::IuiLayer::Init(0, nullptr);
}

void Device::Init() {
    Lumora::IuiLayer::Init(static_cast<unsigned int>(m_table.size()),
                           m_table.empty() ? nullptr : m_table.data());
}

// ---------------- Configuration ----------------

Configuration::Configuration(const SessionInput& in)
    : m_nullSessionParams(in.nullSessionParams),
      m_nullStreamArray(in.nullStreamArray),
      m_operationMode(in.operationMode) {
    for (const StreamInput& s : in.streams) {
        if (s.null) {
            m_pointers.push_back(nullptr);
            continue;
        }
        camera3_stream_t stream = {};
        stream.stream_type = s.streamType;
        stream.width = s.width;
        stream.height = s.height;
        stream.format = s.format;
        stream.usage = s.usage;
        stream.data_space = static_cast<android_dataspace_t>(s.dataSpace);
        if (s.physicalIdKind != kIdNull) {
            m_physicalIds.push_back(s.physicalIdKind == kIdText ? s.physicalId : "");
            stream.physical_camera_id = m_physicalIds.back().c_str();
        }
        stream.stream_use_case = s.useCase;
        stream.ext_stream_mode = s.extMode;
        stream.ext_stream_flags = s.extFlags;
        stream.dynamic_range_profile = s.dynamicRangeProfile;
        m_streams.push_back(stream);
        m_pointers.push_back(&m_streams.back());
    }
    for (const TagEntry& tag : in.sessionParams) {
        m_sessionParams.Add(tag);
    }
    // A reconfiguration sees the mode that an override may have written.
    m_config.operation_mode = m_operationMode;
    m_stranger.width = 4000;
    m_stranger.height = 3000;
    m_stranger.format = 0x21;
    m_stranger.physical_camera_id = "99999999999999999999";
    KeepBokehSessionsRunnable(in);
}

// A bokeh session with other than two or three physical preview cameras stops
// the process on purpose. Whenever the session may end up in a bokeh mode,
// the streams are made to give two such cameras (or kept at three).
void Configuration::KeepBokehSessionsRunnable(const SessionInput& in) {
    if (in.nullSessionParams || (!IsBokehMode(in.operationMode) && !OverrideMayGiveBokeh())) {
        return;
    }
    m_nullStreamArray = false;
    std::set<int> distinct;
    for (camera3_stream_t* stream : m_pointers) {
        if (stream != nullptr && IsPhysicalPreview(*stream)) {
            distinct.insert(atoi(stream->physical_camera_id));
        }
    }
    if (distinct.size() == 2 || distinct.size() == 3) {
        return;
    }
    // More than three: the cameras after the first two lose their physical id.
    std::set<int> keep;
    for (camera3_stream_t* stream : m_pointers) {
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
        camera3_stream_t stream = {};
        stream.width = 1920;
        stream.height = 1080;
        stream.format = 35;
        stream.usage = 0x100;
        m_physicalIds.push_back(std::to_string(id));
        stream.physical_camera_id = m_physicalIds.back().c_str();
        m_streams.push_back(stream);
        m_pointers.push_back(&m_streams.back());
    }
}

camera3_stream_configuration_t* Configuration::Get() {
    m_config.num_streams = static_cast<uint32_t>(m_pointers.size());
    m_config.streams = m_nullStreamArray || m_pointers.empty() ? nullptr : m_pointers.data();
    if (m_nullStreamArray && m_config.num_streams == 0) {
        m_config.num_streams = 1;  // a count without the array it counts
    }
    m_config.session_parameters = m_nullSessionParams ? nullptr : m_sessionParams.Get();
    return &m_config;
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
    std::unique_ptr<Metadata> settings;
    if (step.hasMetadata) {
        settings = std::make_unique<Metadata>();
        for (const TagEntry& tag : step.tags) {
            settings->Add(tag);
        }
    }
    std::vector<camera3_stream_buffer_t> buffers;
    for (const BufferInput& buffer : step.buffers) {
        camera3_stream_buffer_t b = {};
        b.stream = StreamRef(config, buffer.stream);
        buffers.push_back(b);
    }
    camera3_capture_request_t request = {};
    request.frame_number = step.frame;
    request.settings = settings ? settings->Get() : nullptr;
    request.num_output_buffers = static_cast<uint32_t>(buffers.size());
    request.output_buffers = step.nullBufferArray || buffers.empty() ? nullptr : buffers.data();
    Sink(static_cast<uint32_t>(parser.UpdatePerRequestCaps(&request)));
}

void RunResult(Lumora::IuiLayer& parser, const Step& step) {
    std::unique_ptr<Metadata> metadata;
    if (step.hasMetadata) {
        metadata = std::make_unique<Metadata>();
        if (step.hasAec) {
            std::vector<uint8_t> payload;
            for (const AecRecordInput& r : step.aec) {
                uint8_t record[20];
                memcpy(record, &r.cameraId, 4);
                memcpy(record + 4, &r.value1, 4);
                memcpy(record + 8, &r.value2, 4);
                memcpy(record + 12, &r.expCount, 4);
                memcpy(record + 16, &r.extra, 4);
                payload.insert(payload.end(), record, record + sizeof(record));
            }
            if (step.aecBytes > 0 && step.aecBytes < payload.size()) {
                payload.resize(step.aecBytes);
            }
            metadata->Add(TagId(true, kTagExposureCountList), payload.data(), payload.size());
        }
        if (step.hasMlft) {
            std::vector<uint8_t> block(step.mlftBytes, 0);
            if (block.size() >= kMlftSwitchOffset + sizeof(step.mlft)) {
                memcpy(block.data() + kMlftSwitchOffset, &step.mlft, sizeof(step.mlft));
            }
            metadata->Add(TagId(true, kTagMlftParameters), block.data(), block.size());
        }
        for (const TagEntry& tag : step.tags) {
            metadata->Add(tag);
        }
    }
    camera3_capture_result_t result = {};
    result.frame_number = step.frame;
    result.result = metadata ? metadata->Get() : nullptr;
    Sink(static_cast<uint32_t>(parser.UpdateResultAppliedCaps(&result)));
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
    DeviceRoot::Instance().WriteFiles(in);
    {
        Device device(in.cameras);
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
