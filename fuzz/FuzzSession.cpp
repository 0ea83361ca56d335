// Whole camera sessions from one input, replayed as uilayer-sim replays them
// (fuzz_session); with UILAYER_FUZZ_FIXED_SESSION, steps against one session
// of an example (fuzz_request_result).
#include <HostKit/DeviceRoot.h>
#include <HostKit/StreamConfig.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <set>

#include "ScenarioInput.h"
#include "common/StreamPredicates.h"
#include "replay/Replay.h"

namespace {

using namespace UilayerSim;

const UilayerFuzz::Examples* g_examples = nullptr;
#ifdef UILAYER_FUZZ_FIXED_SESSION
constexpr const char* kFixedSession = UILAYER_FUZZ_FIXED_SESSION;
#else
constexpr const char* kFixedSession = nullptr;
#endif

// Calls `use` with each stream that shows a physical camera's preview, as a
// bokeh session counts them, and the camera's id.
template <typename Use>
void ForEachPhysicalPreview(SessionSetup& session, Use use) {
    for (StreamSetup& setup : session.streams) {
        HostKit::StreamConfig config;
        const camera3_stream_t& stream = *config.Add(setup);
        if (Lumora::IsPreviewYuv(stream) && Lumora::HasPhysicalCameraId(stream)) {
            use(setup, atoi(stream.physical_camera_id));
        }
    }
}

StreamSetup Preview(int id) {
    return {HostKit::PreviewStream(1920, 1080, std::to_string(id)),
            "preview of camera " + std::to_string(id)};
}

// The first two cameras keep their physical previews, the others' lose their
// physical id, and previews of unused ids make up the two.
void GiveTwoPreviewCameras(SessionSetup& session) {
    std::set<int> kept;
    ForEachPhysicalPreview(session, [&](StreamSetup& stream, int id) {
        if (kept.size() < 2) {
            kept.insert(id);
        }
        if (kept.count(id) == 0) {
            stream.physicalId.clear();
        }
    });
    for (int id = 0; kept.size() < 2; ++id) {
        if (kept.insert(id).second) {
            session.streams.push_back(Preview(id));
        }
    }
}

// A session that ends up in a bokeh mode with other than two or three
// physical preview cameras stops the process by design. Whether a session
// ends up there (the configuration may rewrite a client's mode) the library
// answers: a rerun in which such sessions show two physical previews reports
// it. The sessions it names get two physical preview cameras.
void KeepBokehSessionsRunnable(Scenario& scenario, const ReplayOptions& options) {
    Scenario probe = scenario;
    std::vector<size_t> open;
    for (size_t i = 0; i < probe.sessions.size(); ++i) {
        SessionSetup& session = probe.sessions[i];
        std::set<int> ids;
        ForEachPhysicalPreview(session, [&](StreamSetup&, int id) { ids.insert(id); });
        if (ids.size() != 2 && ids.size() != 3) {
            open.push_back(i);
            session.streams = {Preview(0), Preview(1)};
            session.steps.clear();
        }
    }
    if (open.empty()) {
        return;
    }
    const _ReplayRecord record = RecordReplay(probe, options);
    for (size_t i : open) {
        const std::optional<Lumora::_SatStaticCaps>& sat = record.sessions[i].sat;
        if (!sat.has_value() || sat->isBokehMode != 0) {
            GiveTwoPreviewCameras(scenario.sessions[i]);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    g_examples = new UilayerFuzz::Examples({UILAYER_FUZZ_EXAMPLES, UILAYER_FUZZ_FINDINGS});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // fuzz_request_result runs steps only, on the first session of one example,
    // whose mode is no bokeh mode and stays as it is.
    static const Scenario* fixed =
        kFixedSession != nullptr ? g_examples->Find(kFixedSession) : nullptr;
    FuzzedDataProvider provider(data, size);
    UilayerFuzz::Input input = fixed != nullptr
                                   ? UilayerFuzz::ReadSteps(provider, *g_examples, *fixed)
                                   : UilayerFuzz::ReadScenario(provider, *g_examples);
    ReplayOptions options;
    options.log = input.log;
    options.siblingRoot = HostKit::DefaultSiblingRoot();
    try {
        if (fixed == nullptr) {
            KeepBokehSessionsRunnable(input.scenario, options);
        }
        RecordReplay(input.scenario, options);
    } catch (const std::exception&) {
        // A device the replay cannot set up: a refused configuration text or
        // tag value.
    }
    return 0;
}
