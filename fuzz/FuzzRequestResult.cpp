// Requests, results and per-frame queries against one session of the example
// device, configured once: the four-camera zoom set in video at 60 fps with
// SHDR, warm start and the streams of every role the request path knows.
#include <HostPlatform.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "IuiLayer.h"
#include "SessionModel.h"
#include "SessionRunner.h"

namespace {

using UilayerFuzz::CameraInput;
using UilayerFuzz::SessionInput;
using UilayerFuzz::StreamInput;
using UilayerFuzz::TagEntry;

struct FixedSession {
    SessionInput input;
    HostKit::CameraTable* device = nullptr;
    UilayerFuzz::Configuration* config = nullptr;
    std::shared_ptr<Lumora::IuiLayer> parser;
};

FixedSession* g_session = nullptr;

std::string ReadFile(const std::string& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

CameraInput SingleCamera(uint32_t id, const char* sensor, uint32_t width, uint32_t height) {
    CameraInput camera;
    camera.frameworkId = id;
    camera.logicalCamId = id;
    camera.numPhysicalCameras = 1;
    camera.entries.push_back({static_cast<int32_t>(id), static_cast<int32_t>(id), id, 1});
    camera.sensorName = sensor;
    camera.fullArrayWidth = width;
    camera.fullArrayHeight = height;
    return camera;
}

StreamInput Stream(uint32_t width, uint32_t height, int32_t format, uint32_t usage,
                   const char* physicalId = nullptr, int64_t useCase = 0) {
    StreamInput stream;
    stream.width = width;
    stream.height = height;
    stream.format = format;
    stream.usage = usage;
    stream.physicalIdKind = physicalId != nullptr ? UilayerFuzz::kIdText : UilayerFuzz::kIdEmpty;
    stream.physicalId = physicalId != nullptr ? physicalId : "";
    stream.useCase = useCase;
    return stream;
}

TagEntry Tag(bool vendor, uint32_t tag, const void* data, uint32_t count, size_t size) {
    TagEntry entry;
    entry.vendor = vendor;
    entry.tag = tag;
    entry.count = count;
    const uint8_t* bytes = static_cast<const uint8_t*>(data);
    entry.data.assign(bytes, bytes + count * size);
    return entry;
}

TagEntry Text(uint32_t index, const std::string& text) {
    return Tag(true, index, text.data(), static_cast<uint32_t>(text.size()), 1);
}

void ConfigureOnce() {
    g_session = new FixedSession();
    SessionInput& in = g_session->input;
    in.configText = ReadFile(std::string(UILAYER_FUZZ_EXAMPLES) + "/device.conf");
    in.properties = {{6, "lumora"}, {7, "lumora_phone"}, {8, "lumora"}};
    in.hasWireless = true;
    in.wireless = "0\n";
    in.warmStartFiles = {{0, "1.0 2.0 3.0 150.0 600.0 6.0 7 110.0 123456\n"},
                         {3, "1.0 2.0 3.0 90.0 900.0 6.0 7 800.0 123456\n"}};
    in.cameras = {SingleCamera(0, "lmw50", 8192, 6144), SingleCamera(1, "lmf32", 6528, 4896),
                  SingleCamera(2, "lmu13", 4208, 3120), SingleCamera(3, "lmt64", 9248, 6944),
                  SingleCamera(4, "lmm02", 1600, 1200)};
    in.cameras[0].numSensorModes = 2;
    in.cameras[0].sensorModeFlags = {0x0, 0x800};
    CameraInput zoom;
    zoom.frameworkId = 5;
    zoom.logicalCamId = 5;
    zoom.type = 2;
    zoom.numPhysicalCameras = 4;
    zoom.entries = {{0, 0, 0, 1}, {2, 2, 2, 0}, {3, 3, 3, 0}, {4, 4, 4, 0}};
    in.cameras.push_back(zoom);
    in.cameraId = 5;
    in.operationMode = 0x8009;
    const int32_t fps[] = {60, 60};
    const uint8_t one = 1;
    const float lux = 120.0f;
    in.sessionParams = {
        Text(34, "com.lumora.camera"),  Text(105, "com.lumora.camera.VideoActivity"),
        Tag(false, 0x10005, fps, 2, 4), Tag(false, 0x10011, &one, 1, 1),
        Text(160, "video_mode"),        Tag(true, 85, &lux, 1, 4),
        Tag(true, 109, &one, 1, 1)};
    in.streams = {Stream(1920, 1080, 0x22, 0x900),
                  Stream(3840, 2160, 0x22, 0x10000),
                  Stream(3840, 2160, 0x23, 0x3),
                  Stream(4000, 3000, 0x21, 0x3),
                  Stream(8192, 6144, 0x20, 0x3, "0"),
                  Stream(4096, 3072, 0x20, 0x3, "3", 0x0400000000010000),
                  Stream(4000, 3000, 0x20, 0x3, nullptr, 0x0800000000010000),
                  Stream(640, 480, 0x23, 0x40),
                  Stream(1280, 720, 0x23, 0x100, "2")};
    in.streams[3].dataSpace = 0x8C20000;

    UilayerFuzz::PreparePlatform(in);
    UilayerFuzz::WriteFiles(in);
    g_session->device = new HostKit::CameraTable(UilayerFuzz::CamerasOf(in.cameras));
    g_session->device->Init();
    g_session->config = new UilayerFuzz::Configuration(in);
    g_session->parser = Lumora::IuiLayer::Get(in.cameraId);
    g_session->parser->ParseStaticCapabilities(g_session->config->Get());
    g_session->parser->ParseStreamCapabilities(g_session->config->Get());
    UilayerFuzz::DrainLogs();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    UilayerFuzz::Root();
    ConfigureOnce();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    UilayerFuzz::Decoder decoder(data, size);
    uint8_t logSwitches = 0;
    decoder.Int(logSwitches, uint8_t{0}, uint8_t{31});
    std::vector<UilayerFuzz::Step> steps;
    UilayerFuzz::VisitSteps(decoder, steps);
    // The session stays as configured: no step configures it again.
    for (UilayerFuzz::Step& step : steps) {
        if (step.kind == UilayerFuzz::kStepReconfigure) {
            step.kind = UilayerFuzz::kStepAccessors;
        }
    }
    HostPlatform::SetLogSwitches(logSwitches & 1, logSwitches & 2, logSwitches & 4, logSwitches & 8,
                                 logSwitches & 16);
    UilayerFuzz::RunSteps(*g_session->parser, *g_session->config, steps);
    UilayerFuzz::DrainLogs();
    return 0;
}
