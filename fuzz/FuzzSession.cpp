// Whole camera sessions from one input, replayed as uilayer-sim replays them
// (fuzz_session); with UILAYER_FUZZ_FIXED_SESSION, steps against one session
// of an example (fuzz_request_result).
#include <HostKit/DeviceRoot.h>
#include <HostKit/StreamConfig.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <set>
#include <type_traits>
#include <utility>

#include "IuiLayer.h"
#include "common/StreamPredicates.h"
#include "common/VendorTags.h"
#include "core/Names.h"
#include "core/ScenarioReader.h"
#include "replay/Replay.h"

namespace UilayerFuzz {

using namespace UilayerSim;

// A fuzz input read as a scenario of the simulator: values lean on what the
// examples and the library's tables hold, and can still be any of their type.
// The bundled example scenarios (*.yaml of the directories), and the values
// the decoder picks from: everything the examples hold.
struct Examples {
    explicit Examples(const std::vector<std::string>& directories);

    std::vector<Scenario> scenarios;  // by file name
    std::vector<SessionSetup> sessions;
    std::vector<StreamSetup> streams;
    std::vector<TagValue> tags;
    std::vector<Step> steps;
    std::vector<std::pair<std::string, std::string>> properties;  // and those of no example
    std::vector<std::pair<std::string, std::string>> files;
    std::vector<std::string> texts;  // packages, activities and sensor names
    std::vector<uint32_t> numbers;   // operation modes, sizes and frames

    // The scenario of that name ("zoom-video"), or null.
    const Scenario* Find(const std::string& name) const;
};

struct Input {
    Scenario scenario;
    bool log = false;
};

namespace {

constexpr size_t kMaxEdits = 24;
constexpr size_t kMaxList = 8;  // streams, buffers, tags and values added by one edit
constexpr size_t kMaxSessions = 4;
constexpr uint32_t kMaxRepeat = 32;  // requests of a repeat step, so that an input stays fast
constexpr size_t kMaxText = 96;

// The properties the library reads; the examples set only some of them.
const char* const kPropertyNames[] = {
    "vendor.debug.camera.policy.debugEnable",         "vendor.debug.camera.policy.sensormode",
    "vendor.debug.camera.policy.genericCam",          "persist.vendor.camera.3dlut.enable",
    "persist.vendor.camera.sat.enable.fallbackdebug",
};

// The values of a name table of the simulator (the platform's and the
// library's names).
const std::vector<int64_t>& Named(NameTable table) {
    static std::map<NameTable, std::vector<int64_t>> tables;
    std::vector<int64_t>& values = tables[table];
    if (values.empty()) {
        std::set<int64_t> distinct;
        for (const std::string& name : AcceptedNames(table)) {
            int64_t value = 0;
            if (NumberByName(table, name, &value)) {
                distinct.insert(value);
            }
        }
        values.assign(distinct.begin(), distinct.end());
    }
    return values;
}

// One of `known`, or any value of the type.
template <typename T, typename K>
T Pick(FuzzedDataProvider& data, const std::vector<K>& known) {
    const size_t choice = data.ConsumeIntegralInRange<size_t>(0, known.size());
    return choice < known.size() ? static_cast<T>(known[choice]) : data.ConsumeIntegral<T>();
}

std::string PickText(FuzzedDataProvider& data, const std::vector<std::string>& known) {
    const size_t choice = data.ConsumeIntegralInRange<size_t>(0, known.size());
    return choice < known.size() ? known[choice] : data.ConsumeRandomLengthString(kMaxText);
}

// A value in [min, max], or any value of the type.
template <typename T>
T Near(FuzzedDataProvider& data, T min, T max) {
    return data.ConsumeBool() ? data.ConsumeIntegralInRange(min, max) : data.ConsumeIntegral<T>();
}

template <typename T>
const T& PickOne(FuzzedDataProvider& data, const std::vector<T>& items) {
    return items[data.ConsumeIntegralInRange<size_t>(0, items.size() - 1)];
}

template <typename T>
void Insert(FuzzedDataProvider& data, std::vector<T>& items, T item) {
    items.insert(items.begin() + data.ConsumeIntegralInRange<size_t>(0, items.size()),
                 std::move(item));
}

template <typename T>
void Erase(FuzzedDataProvider& data, std::vector<T>& items) {
    if (!items.empty()) {
        items.erase(items.begin() + data.ConsumeIntegralInRange<size_t>(0, items.size() - 1));
    }
}

template <typename T>
std::vector<T> Values(FuzzedDataProvider& data, T (FuzzedDataProvider::*consume)()) {
    std::vector<T> values(data.ConsumeIntegralInRange<size_t>(0, kMaxList));
    for (T& value : values) {
        value = (data.*consume)();
    }
    return values;
}

// A tag of the vendor tag table, a standard tag of the metadata store, or any
// tag, with values of the tag's type.
TagValue Tag(FuzzedDataProvider& data) {
    TagValue tag;
    tag.vendor = data.ConsumeBool();
    if (tag.vendor) {
        const size_t entry = data.ConsumeIntegralInRange<size_t>(0, Lumora::kVendorTagCount);
        tag.tag = entry < Lumora::kVendorTagCount ? Lumora::kVendorTags[entry].index
                                                  : data.ConsumeIntegral<uint32_t>();
        tag.type = VendorTagType(tag.tag);
    } else {
        tag.tag = Pick<uint32_t>(data, Named(NameTable::StandardTags));
        tag.type = StandardTagType(tag.tag);
    }
    switch (tag.type) {
        case ElementType::Int32:
            tag.int32s = Values(data, &FuzzedDataProvider::ConsumeIntegral<int32_t>);
            break;
        case ElementType::Int64:
            tag.int64s = Values(data, &FuzzedDataProvider::ConsumeIntegral<int64_t>);
            break;
        case ElementType::Float:
            tag.floats = Values(data, &FuzzedDataProvider::ConsumeFloatingPoint<float>);
            break;
        default:
            tag.type = ElementType::Byte;
            const std::string text = data.ConsumeRandomLengthString(kMaxText);
            tag.bytes.assign(text.begin(), text.end());
            break;
    }
    return tag;
}

// A stream of the examples, each field as it is or with another value.
StreamSetup Stream(FuzzedDataProvider& data, const Examples& examples) {
    StreamSetup stream = PickOne(data, examples.streams);
    auto edit = [&](auto& field, NameTable table) {
        if (data.ConsumeBool()) {
            field = Pick<std::decay_t<decltype(field)>>(data, Named(table));
        }
    };
    edit(stream.streamType, NameTable::StreamTypes);
    edit(stream.format, NameTable::PixelFormats);
    edit(stream.usage, NameTable::UsageBits);
    edit(stream.dataSpace, NameTable::DataSpaces);
    edit(stream.useCase, NameTable::StreamUseCases);
    edit(stream.dynamicRangeProfile, NameTable::DynamicRangeProfiles);
    if (data.ConsumeBool()) {
        stream.width = Pick<uint32_t>(data, examples.numbers);
        stream.height = Pick<uint32_t>(data, examples.numbers);
    }
    if (data.ConsumeBool()) {
        stream.hasPhysicalId = data.ConsumeBool();
        stream.physicalId = data.ConsumeRandomLengthString(24);
    }
    if (data.ConsumeBool()) {
        stream.extMode = data.ConsumeIntegral<uint32_t>();
        stream.extFlags = data.ConsumeIntegral<uint32_t>();
    }
    return stream;
}

RequestSetup Request(FuzzedDataProvider& data, const Examples& examples) {
    RequestSetup request;
    request.frame = Pick<uint32_t>(data, examples.numbers);
    request.buffers = Values(data, &FuzzedDataProvider::ConsumeIntegral<size_t>);
    request.hasSettings = data.ConsumeBool();
    request.hasSensorModes = data.ConsumeBool();
    request.sensorModes = Values(data, &FuzzedDataProvider::ConsumeIntegral<int32_t>);
    request.hasZoomRatio = data.ConsumeBool();
    request.zoomRatio = data.ConsumeFloatingPoint<float>();
    request.settings.resize(data.ConsumeIntegralInRange<size_t>(0, kMaxList));
    for (TagValue& tag : request.settings) {
        tag = data.ConsumeBool() ? PickOne(data, examples.tags) : Tag(data);
    }
    return request;
}

ResultSetup Result(FuzzedDataProvider& data, const Examples& examples) {
    ResultSetup result;
    result.frame = Pick<uint32_t>(data, examples.numbers);
    result.hasMetadata = data.ConsumeBool();
    result.hasAec = data.ConsumeBool();
    result.aec.resize(data.ConsumeIntegralInRange<size_t>(0, kMaxList));
    for (AecSetup& aec : result.aec) {
        aec.cameraId = Near(data, -1, 9);
        aec.expCount = Near(data, 0, 5);
        aec.aecValue1 = data.ConsumeFloatingPoint<float>();
        aec.aecValue2 = data.ConsumeFloatingPoint<float>();
        aec.extra = data.ConsumeIntegral<uint32_t>();
    }
    result.hasMlft = data.ConsumeBool();
    result.mlft = Near(data, 0u, 2u);
    return result;
}

// A step of the examples, or one of any kind with any arguments.
Step NewStep(FuzzedDataProvider& data, const Examples& examples) {
    if (data.ConsumeBool()) {
        return PickOne(data, examples.steps);
    }
    Step step;
    step.kind = static_cast<StepKind>(
        data.ConsumeIntegralInRange<int>(0, static_cast<int>(StepKind::RequestCaps)));
    step.request = Request(data, examples);
    step.result = Result(data, examples);
    step.count = data.ConsumeIntegralInRange<uint32_t>(1, kMaxRepeat);
    step.repeatResult = data.ConsumeBool();
    step.camera = data.ConsumeBool() ? kLogicalCamera : Near(data, 0u, 15u);  // or a physical id
    step.caps.resize(data.ConsumeIntegralInRange<size_t>(1, kMaxList));
    for (uint32_t& bit : step.caps) {
        bit = data.ConsumeIntegralInRange<uint32_t>(0, Lumora::_CapsBitset::kBitCount - 1);
    }
    step.capsSource = static_cast<CapsSource>(data.ConsumeIntegralInRange(0, 2));
    step.hasFrame = data.ConsumeBool();
    step.frame = Pick<uint32_t>(data, examples.numbers);
    step.role = Near<int32_t>(data, 0, Lumora::EStreamTypeMax - 1);
    step.tuningType = Near(data, 0u, 3u);
    step.sensor = PickText(data, examples.texts);
    step.skip = Near(data, 0, 1);
    return step;
}

// The start of line `line` of `text` (its end when there are fewer lines).
size_t LineStart(const std::string& text, size_t line) {
    size_t position = 0;
    for (size_t i = 0; i < line && position < text.size(); ++i) {
        const size_t end = text.find('\n', position);
        position = end == std::string::npos ? text.size() : end + 1;
    }
    return position;
}

// An edit of the configuration text: a line dropped, a line's value
// rewritten, or a line added.
void EditConfig(FuzzedDataProvider& data, std::string& text) {
    const size_t lines = static_cast<size_t>(std::count(text.begin(), text.end(), '\n'));
    const size_t begin = LineStart(text, data.ConsumeIntegralInRange<size_t>(0, lines));
    const size_t end = LineStart(text, 1 + std::count(text.begin(), text.begin() + begin, '\n'));
    const std::string line = data.ConsumeRandomLengthString(kMaxText) + "\n";
    switch (data.ConsumeIntegralInRange(0, 2)) {
        case 0:
            text.erase(begin, end - begin);
            break;
        case 1: {
            const size_t equals = text.find('=', begin);
            const size_t keep = equals < end ? equals + 1 - begin : 0;
            text.replace(begin + keep, end - begin - keep, line);
            break;
        }
        default:
            text.insert(begin, line);
            break;
    }
}

void EditSession(FuzzedDataProvider& data, const Examples& examples, Scenario& scenario,
                 SessionSetup& session) {
    switch (data.ConsumeIntegralInRange(0, 11)) {
        case 0:
            // A vendor mode, or a number of the examples, or any.
            session.operationMode = data.ConsumeBool() ? 0x8000u + data.ConsumeIntegral<uint8_t>()
                                                       : Pick<uint32_t>(data, examples.numbers);
            break;
        case 1:
            session.hasPackage = data.ConsumeBool();
            session.package = PickText(data, examples.texts);
            session.hasActivity = data.ConsumeBool();
            session.activity = PickText(data, examples.texts);
            break;
        case 2:
            session.params.push_back(data.ConsumeBool() ? PickOne(data, examples.tags) : Tag(data));
            break;
        case 3:
            Erase(data, session.params);
            session.hasSessionParams = data.ConsumeBool();
            break;
        case 4:
            Insert(data, session.streams, Stream(data, examples));
            break;
        case 5:
            Erase(data, session.streams);
            break;
        case 6:
            Insert(data, session.steps, NewStep(data, examples));
            break;
        case 7:
            Erase(data, session.steps);
            break;
        case 8:
            session.camera = data.ConsumeBool() ? PickOne(data, scenario.cameras).frameworkId
                                                : data.ConsumeIntegral<uint32_t>();
            break;
        case 9: {
            const auto& example = PickOne(data, examples.properties);
            session.properties.emplace_back(
                example.first,
                data.ConsumeBool() ? example.second : data.ConsumeRandomLengthString(40));
            break;
        }
        case 10:
            session.files.emplace_back(PickOne(data, examples.files).first,
                                       data.ConsumeRandomLengthString(kMaxText));
            break;
        default: {
            CameraSetup& camera =
                scenario
                    .cameras[data.ConsumeIntegralInRange<size_t>(0, scenario.cameras.size() - 1)];
            camera.hasRecord = data.ConsumeBool();
            camera.shortRecord = data.ConsumeBool();
            camera.hasSensorName = data.ConsumeBool();
            camera.sensorName = PickText(data, examples.texts);
            camera.type = Near(data, 0u, 4u);
            if (data.ConsumeBool()) {
                // Counts in the record other than those of its lists.
                camera.numPhysicalCameras = Near(data, 0u, 9u);
                camera.numSensorModes = Near(data, 0u, 33u);
            }
            camera.sensorModeFlags = Values(data, &FuzzedDataProvider::ConsumeIntegral<uint16_t>);
            camera.fullArrayWidth = Pick<uint32_t>(data, examples.numbers);
            camera.fullArrayHeight = Pick<uint32_t>(data, examples.numbers);
            break;
        }
    }
}

// What the replay expects of a scenario, as the reader checks it: a session,
// streams, buffers of configured streams, frame numbers of a repeat within
// range.
void Settle(Scenario& scenario, const Examples& examples) {
    if (scenario.sessions.empty()) {
        scenario.sessions.push_back(examples.sessions.front());
    }
    for (SessionSetup& session : scenario.sessions) {
        if (session.streams.empty()) {
            session.streams.push_back(examples.streams.front());
        }
        for (Step& step : session.steps) {
            for (size_t& buffer : step.request.buffers) {
                buffer %= session.streams.size();
            }
            step.count = std::min(std::max(step.count, 1u), kMaxRepeat);
            step.request.frame = std::min(step.request.frame, UINT32_MAX - step.count + 1);
        }
    }
}

}  // namespace

Examples::Examples(const std::vector<std::string>& directories) {
    for (const char* name : kPropertyNames) {
        properties.emplace_back(name, "1");
    }
    std::vector<std::string> paths;
    for (const std::string& directory : directories) {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            if (entry.path().extension() == ".yaml") {
                paths.push_back(entry.path());
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    for (const std::string& path : paths) {
        scenarios.push_back(ReadScenarioFile(path));
        const Scenario& scenario = scenarios.back();
        properties.insert(properties.end(), scenario.properties.begin(), scenario.properties.end());
        files.insert(files.end(), scenario.files.begin(), scenario.files.end());
        for (const SessionSetup& session : scenario.sessions) {
            sessions.push_back(session);
            streams.insert(streams.end(), session.streams.begin(), session.streams.end());
            tags.insert(tags.end(), session.params.begin(), session.params.end());
            texts.push_back(session.package);
            texts.push_back(session.activity);
            numbers.push_back(session.operationMode);
            for (const StreamSetup& stream : session.streams) {
                numbers.push_back(stream.width);
                numbers.push_back(stream.height);
            }
            for (const Step& step : session.steps) {
                steps.push_back(step);
                tags.insert(tags.end(), step.request.settings.begin(), step.request.settings.end());
                numbers.push_back(step.request.frame);
            }
        }
        for (const CameraSetup& camera : scenario.cameras) {
            texts.push_back(camera.sensorName);
        }
    }
}

const Scenario* Examples::Find(const std::string& name) const {
    const auto found =
        std::find_if(scenarios.begin(), scenarios.end(),
                     [&](const Scenario& scenario) { return scenario.name == name + ".yaml"; });
    return found == scenarios.end() ? nullptr : &*found;
}

Input ReadScenario(FuzzedDataProvider& data, const Examples& examples) {
    Input input;
    const Scenario* base = examples.Find(data.ConsumeRandomLengthString(32));
    input.scenario = base != nullptr ? *base : PickOne(data, examples.scenarios);
    input.log = data.ConsumeBool();
    Scenario& scenario = input.scenario;
    for (size_t edit = 0; edit < kMaxEdits && data.remaining_bytes() > 0; ++edit) {
        switch (data.ConsumeIntegralInRange(0, 3)) {
            case 0:
                EditConfig(data, scenario.configText);
                break;
            case 1:
                if (scenario.sessions.size() < kMaxSessions) {
                    scenario.sessions.push_back(PickOne(data, examples.sessions));
                }
                break;
            case 2:
                Erase(data, scenario.sessions);
                break;
            default:
                if (!scenario.sessions.empty()) {
                    EditSession(data, examples, scenario,
                                scenario.sessions[data.ConsumeIntegralInRange<size_t>(
                                    0, scenario.sessions.size() - 1)]);
                }
                break;
        }
    }
    Settle(scenario, examples);
    return input;
}

Input ReadSteps(FuzzedDataProvider& data, const Examples& examples, const Scenario& fixed) {
    Input input;
    input.scenario = fixed;
    input.scenario.sessions.resize(1);
    std::vector<Step>& steps = input.scenario.sessions.front().steps;
    const Scenario* base = examples.Find(data.ConsumeRandomLengthString(32));
    steps = (base != nullptr ? *base : PickOne(data, examples.scenarios)).sessions.front().steps;
    input.log = data.ConsumeBool();
    for (size_t edit = 0; edit < kMaxEdits && data.remaining_bytes() > 0; ++edit) {
        if (data.ConsumeBool()) {
            Erase(data, steps);
        } else {
            Insert(data, steps, NewStep(data, examples));
        }
    }
    Settle(input.scenario, examples);
    return input;
}

}  // namespace UilayerFuzz

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
