// Cost of a whole stream configuration (ParseStaticCapabilities followed by
// ParseStreamCapabilities) of the richest bundled example session: the
// four-camera zoom video session on the example device and configuration.
#include <HostPlatform.h>
#include <benchmark/benchmark.h>
#include <cutils/properties.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "Device.h"
#include "DeviceRoot.h"
#include "IuiLayer.h"
#include "ScenarioReader.h"

namespace {

using namespace UilayerSim;

constexpr uint32_t kPackageTag = 34;
constexpr uint32_t kActivityTag = 105;

class ExampleSession {
public:
    ExampleSession() {
        HostPlatform::SetLogSwitches(false, false, false, false, false);
        m_scenario = ReadScenarioFile(UILAYER_BENCH_EXAMPLES "/zoom-video.yaml");
        m_root = std::make_unique<DeviceRoot>(UILAYER_BENCH_SIBLING_ROOT);
        for (const auto& file : m_scenario.files) {
            m_root->WriteFile(file.first, file.second);
        }
        m_root->Activate();
        for (const auto& property : m_scenario.properties) {
            property_set(property.first.c_str(), property.second.c_str());
        }
        if (HostPlatform::LoadConfiguration(m_scenario.configText.c_str()) != 0) {
            fprintf(stderr, "example configuration refused\n");
            abort();
        }
        m_device = std::make_unique<SimDevice>(m_scenario.cameras);

        const SessionSetup& setup = m_scenario.sessions.front();
        for (const auto& file : setup.files) {
            m_root->WriteFile(file.first, file.second);
        }
        for (const auto& property : setup.properties) {
            property_set(property.first.c_str(), property.second.c_str());
        }
        for (const StreamSetup& stream : setup.streams) {
            camera3_stream_t record = {};
            record.stream_type = stream.streamType;
            record.width = stream.width;
            record.height = stream.height;
            record.format = stream.format;
            record.usage = stream.usage;
            record.data_space = static_cast<android_dataspace_t>(stream.dataSpace);
            m_physicalIds.push_back(stream.physicalId);
            record.physical_camera_id =
                stream.hasPhysicalId ? m_physicalIds.back().c_str() : nullptr;
            record.stream_use_case = stream.useCase;
            record.ext_stream_mode = stream.extMode;
            record.dynamic_range_profile = stream.dynamicRangeProfile;
            m_streams.push_back(record);
            m_pointers.push_back(&m_streams.back());
        }
        m_params = MetadataBuffer::WithTags(setup.params, 8, 512);
        if (setup.hasPackage) {
            m_params.Add(VendorTag(kPackageTag), setup.package.data(), setup.package.size(),
                         "package");
        }
        if (setup.hasActivity) {
            m_params.Add(VendorTag(kActivityTag), setup.activity.data(), setup.activity.size(),
                         "activity");
        }
        m_operationMode = setup.operationMode;
        m_config.num_streams = static_cast<uint32_t>(m_pointers.size());
        m_config.streams = m_pointers.data();
        m_config.session_parameters = m_params.Get();
        m_parser = Lumora::IuiLayer::Get(setup.camera);
    }

    int Configure() {
        // A third-app override may rewrite the mode in place: start afresh.
        m_config.operation_mode = m_operationMode;
        return m_parser->ParseStaticCapabilities(&m_config) +
               m_parser->ParseStreamCapabilities(&m_config);
    }

private:
    Scenario m_scenario;
    std::unique_ptr<DeviceRoot> m_root;
    std::unique_ptr<SimDevice> m_device;
    std::deque<camera3_stream_t> m_streams;
    std::deque<std::string> m_physicalIds;
    std::vector<camera3_stream_t*> m_pointers;
    MetadataBuffer m_params;
    uint32_t m_operationMode = 0;
    camera3_stream_configuration_t m_config = {};
    std::shared_ptr<Lumora::IuiLayer> m_parser;
};

void BM_StreamConfiguration(benchmark::State& state) {
    static ExampleSession session;
    for (auto _ : state) {
        benchmark::DoNotOptimize(session.Configure());
    }
}
BENCHMARK(BM_StreamConfiguration)->Unit(benchmark::kMicrosecond);

}  // namespace
