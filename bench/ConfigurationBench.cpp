// Cost of a whole stream configuration (ParseStaticCapabilities followed by
// ParseStreamCapabilities) of the richest bundled example session: the
// four-camera zoom video session on the example device and configuration.
#include <HostKit/CameraTable.h>
#include <HostKit/DeviceRoot.h>
#include <HostKit/StreamConfig.h>
#include <HostPlatform.h>
#include <benchmark/benchmark.h>
#include <cutils/properties.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "IuiLayer.h"
#include "common/VendorTags.h"
#include "core/ScenarioReader.h"

namespace {

using namespace UilayerSim;

class ExampleSession {
public:
    ExampleSession() {
        HostPlatform::SetLogSwitches(false, false, false, false, false);
        m_scenario = ReadScenarioFile(UILAYER_BENCH_EXAMPLES "/zoom-video.yaml");
        m_root = std::make_unique<HostKit::DeviceRoot>();
        m_root->Activate();
        Apply(m_scenario.files, m_scenario.properties);
        if (HostPlatform::LoadConfiguration(m_scenario.configText.c_str()) != 0) {
            fprintf(stderr, "example configuration refused\n");
            abort();
        }
        m_device = std::make_unique<HostKit::CameraTable>(m_scenario.cameras);
        m_device->Init();

        const SessionSetup& setup = m_scenario.sessions.front();
        Apply(setup.files, setup.properties);
        for (const StreamSetup& stream : setup.streams) {
            m_config.Add(stream);
        }
        HostKit::Metadata& params = m_config.SessionParams();
        for (const TagValue& tag : setup.params) {
            params.Set(tag.vendor ? HostKit::VendorTagId(tag.tag) : tag.tag, tag.Data(),
                       tag.Count());
        }
        if (setup.hasPackage) {
            params.VendorString(Lumora::kTagPackageName, setup.package);
        }
        if (setup.hasActivity) {
            params.VendorString(Lumora::kTagActivityName, setup.activity);
        }
        m_operationMode = setup.operationMode;
        m_parser = Lumora::IuiLayer::Get(setup.camera);
    }

    int Configure() {
        // A third-app override may rewrite the mode in place: start afresh.
        m_config.SetOperationMode(m_operationMode);
        return m_parser->ParseStaticCapabilities(m_config.Get()) +
               m_parser->ParseStreamCapabilities(m_config.Get());
    }

private:
    using Texts = std::vector<std::pair<std::string, std::string>>;
    // Writes the device files and sets the properties of the scenario or session.
    void Apply(const Texts& files, const Texts& properties) {
        for (const auto& file : files) {
            m_root->WriteFile(file.first, file.second);
        }
        for (const auto& property : properties) {
            property_set(property.first.c_str(), property.second.c_str());
        }
    }

    Scenario m_scenario;
    std::unique_ptr<HostKit::DeviceRoot> m_root;
    std::unique_ptr<HostKit::CameraTable> m_device;
    HostKit::StreamConfig m_config;
    uint32_t m_operationMode = 0;
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
