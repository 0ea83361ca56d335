// Writes the seed corpora of the fuzzers from the bundled examples: every
// session of every example scenario becomes a fuzz_session input (and its
// steps a fuzz_request_result input), and the example configuration, whole and
// group by group, becomes fuzz_config_loader inputs. Each encoded input is
// decoded again and must give the same fields.
//
//   uilayer_fuzz_seeds EXAMPLES_DIR CORPUS_DIR
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "IuiLayer.h"
#include "core/ScenarioReader.h"
#include "SessionModel.h"
#include "common/VendorTags.h"

namespace {

using namespace UilayerFuzz;

constexpr size_t kMaxRepeats = 4;

size_t SizeOf(UilayerSim::ElementType type) {
    switch (type) {
        case UilayerSim::ElementType::Int32:
        case UilayerSim::ElementType::Float:
            return 4;
        case UilayerSim::ElementType::Int64:
            return 8;
        default:
            return 1;
    }
}

TagEntry Entry(bool vendor, uint32_t tag, const void* data, size_t count, size_t size) {
    TagEntry entry;
    entry.vendor = vendor;
    entry.tag = tag;
    entry.count = static_cast<uint32_t>(count);
    const uint8_t* bytes = static_cast<const uint8_t*>(data);
    entry.data.assign(bytes, bytes + count * size);
    return entry;
}

TagEntry Entry(const UilayerSim::TagValue& value) {
    return Entry(value.vendor, value.tag, value.Data(), value.Count(), SizeOf(value.type));
}

void AddProperty(std::vector<PropertyInput>& out, const std::string& name,
                 const std::string& value) {
    for (uint8_t i = 0; i < kPropertyCount; ++i) {
        if (name == kPropertyNames[i] && out.size() < 6) {
            out.push_back({i, value});
        }
    }
}

void AddFile(SessionInput& in, const std::string& path, const std::string& text) {
    static const std::string kWarmStart = "/data/vendor/camera/aecWarmStartCamera_";
    if (path == "/sys/class/power_supply/wireless/online") {
        in.hasWireless = true;
        in.wireless = text.substr(0, 8);
    } else if (path.compare(0, kWarmStart.size(), kWarmStart) == 0 &&
               in.warmStartFiles.size() < 4) {
        const int id = atoi(path.c_str() + kWarmStart.size());
        in.warmStartFiles.push_back({static_cast<uint8_t>(id & 15), text.substr(0, 96)});
    }
}

Step RequestStep(const UilayerSim::RequestSetup& r, uint32_t frame) {
    Step step;
    step.kind = kStepRequest;
    step.frame = frame;
    step.hasMetadata = r.hasSettings;
    if (r.hasSensorModes) {
        step.tags.push_back(
            Entry(true, Lumora::kTagSensorModeList, r.sensorModes.data(), r.sensorModes.size(), 4));
    }
    if (r.hasZoomRatio) {
        step.tags.push_back(Entry(false, ANDROID_CONTROL_ZOOM_RATIO, &r.zoomRatio, 1, 4));
    }
    for (const UilayerSim::TagValue& value : r.settings) {
        if (step.tags.size() < kMaxTags) {
            step.tags.push_back(Entry(value));
        }
    }
    for (size_t buffer : r.buffers) {
        if (step.buffers.size() < kMaxBuffers) {
            step.buffers.push_back({static_cast<uint8_t>(buffer)});
        }
    }
    return step;
}

Step ResultStep(const UilayerSim::ResultSetup& r, uint32_t frame) {
    Step step;
    step.kind = kStepResult;
    step.frame = frame;
    step.hasMetadata = r.hasMetadata;
    step.hasAec = r.hasAec;
    for (const UilayerSim::AecSetup& aec : r.aec) {
        if (step.aec.size() < kMaxAecRecords) {
            step.aec.push_back(aec);
        }
    }
    step.hasMlft = r.hasMlft;
    step.mlftBytes = r.hasMlft ? 1804 : 0;
    step.mlft = r.mlft;
    return step;
}

// The fuzz step of each scenario query step; the rest go to kStepAccessors.
struct QueryStep {
    UilayerSim::StepKind scenario;
    uint8_t fuzz;
};
constexpr QueryStep kQuerySteps[] = {
    {UilayerSim::StepKind::SessionCaps, kStepSessionCaps},
    {UilayerSim::StepKind::CapsMask, kStepCapsMask},
    {UilayerSim::StepKind::Streams, kStepStreamLists},
    {UilayerSim::StepKind::SensorMode, kStepSensorMode},
    {UilayerSim::StepKind::TuningMode, kStepRequestQueries},
    {UilayerSim::StepKind::RequestCaps, kStepRequestQueries},
    {UilayerSim::StepKind::WarmStart, kStepWarmStart},
    {UilayerSim::StepKind::RemapZoomRatio, kStepRemapZoomRatio},
};

uint8_t QueryStepKind(UilayerSim::StepKind kind) {
    for (const QueryStep& step : kQuerySteps) {
        if (step.scenario == kind) {
            return step.fuzz;
        }
    }
    return kStepAccessors;
}

// The steps of a scenario session, queries mapped to the query steps.
std::vector<Step> StepsOf(const UilayerSim::SessionSetup& session) {
    std::vector<Step> steps;
    auto add = [&](const Step& step) {
        if (steps.size() < kMaxSteps) {
            steps.push_back(step);
        }
    };
    for (const UilayerSim::Step& s : session.steps) {
        switch (s.kind) {
            case UilayerSim::StepKind::Request:
                add(RequestStep(s.request, s.request.frame));
                continue;
            case UilayerSim::StepKind::Result:
                add(ResultStep(s.result, s.result.frame));
                continue;
            case UilayerSim::StepKind::Repeat:
                for (uint32_t n = 0; n < s.count && n < kMaxRepeats; ++n) {
                    add(RequestStep(s.request, s.request.frame + n));
                    if (s.repeatResult) {
                        add(ResultStep(s.result, s.request.frame + n));
                    }
                }
                continue;
            default:
                break;
        }
        Step step;
        step.kind = QueryStepKind(s.kind);
        step.type = s.kind == UilayerSim::StepKind::TuningMode ? s.tuningType : s.camera;
        step.frame = s.frame;
        step.caps = static_cast<uint8_t>(s.caps.empty() ? 0 : s.caps.front() % 100);
        if (s.kind == UilayerSim::StepKind::SessionCaps) {
            for (uint32_t caps : s.caps) {
                step.caps = static_cast<uint8_t>(caps % 100);
                add(step);
            }
            continue;
        }
        if (s.kind == UilayerSim::StepKind::Streams) {
            step.streamType = s.role;
        }
        if (s.kind == UilayerSim::StepKind::SensorMode) {
            for (uint32_t caps : s.caps) {
                if (caps < 64) {
                    step.capsLow |= uint64_t{1} << caps;
                } else if (caps < 100) {
                    step.capsHigh |= uint64_t{1} << (caps - 64);
                }
            }
        }
        if (s.kind == UilayerSim::StepKind::RemapZoomRatio) {
            step.text = s.sensor.substr(0, 96);
            step.skip = s.skip;
        }
        add(step);
    }
    return steps;
}

SessionInput SessionOf(const UilayerSim::Scenario& scenario,
                       const UilayerSim::SessionSetup& session) {
    SessionInput in;
    in.configText = scenario.configText.substr(0, kMaxConfigText);
    for (const auto& property : scenario.properties) {
        AddProperty(in.properties, property.first, property.second);
    }
    for (const auto& property : session.properties) {
        AddProperty(in.properties, property.first, property.second);
    }
    for (const auto& file : scenario.files) {
        AddFile(in, file.first, file.second);
    }
    for (const auto& file : session.files) {
        AddFile(in, file.first, file.second);
    }
    for (const UilayerSim::CameraSetup& setup : scenario.cameras) {
        if (in.cameras.size() >= kMaxCameras && setup.frameworkId != session.camera) {
            continue;
        }
        CameraInput camera;
        camera.hasRecord = setup.hasRecord;
        camera.frameworkId = setup.frameworkId;
        camera.logicalCamId = setup.logicalCamId;
        camera.numPhysicalCameras = static_cast<uint32_t>(setup.physicalCameras.size());
        camera.entries = setup.physicalCameras;
        camera.sensorName = setup.sensorName.substr(0, 64);
        camera.type = setup.type;
        camera.fullArrayWidth = setup.fullArrayWidth;
        camera.fullArrayHeight = setup.fullArrayHeight;
        camera.numSensorModes = static_cast<uint32_t>(setup.sensorModeFlags.size());
        for (size_t m = 0; m < setup.sensorModeFlags.size() && m < 4; ++m) {
            camera.sensorModeFlags.push_back(setup.sensorModeFlags[m]);
        }
        if (in.cameras.size() >= kMaxCameras) {
            in.cameras.back() = camera;  // the session's own camera replaces the last one
        } else {
            in.cameras.push_back(camera);
        }
    }
    in.cameraId = session.camera;
    in.operationMode = session.operationMode;
    in.nullSessionParams = !session.hasSessionParams;
    if (session.hasPackage) {
        in.sessionParams.push_back(Entry(true, Lumora::kTagPackageName, session.package.data(),
                                         session.package.size(), 1));
    }
    if (session.hasActivity) {
        in.sessionParams.push_back(Entry(true, Lumora::kTagActivityName, session.activity.data(),
                                         session.activity.size(), 1));
    }
    for (const UilayerSim::TagValue& value : session.params) {
        if (in.sessionParams.size() < kMaxTags) {
            in.sessionParams.push_back(Entry(value));
        }
    }
    for (const UilayerSim::StreamSetup& setup : session.streams) {
        if (in.streams.size() >= kMaxStreams) {
            break;
        }
        StreamInput stream;
        stream.streamType = setup.streamType;
        stream.width = setup.width;
        stream.height = setup.height;
        stream.format = setup.format;
        stream.usage = setup.usage;
        stream.dataSpace = setup.dataSpace;
        stream.physicalIdKind =
            !setup.hasPhysicalId ? kIdNull : (setup.physicalId.empty() ? kIdEmpty : kIdText);
        stream.physicalId = setup.physicalId.substr(0, 24);
        stream.useCase = setup.useCase;
        stream.extMode = setup.extMode;
        stream.dynamicRangeProfile = setup.dynamicRangeProfile;
        in.streams.push_back(stream);
    }
    in.steps = StepsOf(session);
    return in;
}

// Encodes with `visit`, decodes the bytes again and checks that encoding the
// decoded fields gives the same bytes.
template <typename T, typename Visit>
std::vector<uint8_t> EncodeChecked(T value, Visit visit) {
    Encoder encoder;
    visit(encoder, value);
    const std::vector<uint8_t> bytes = encoder.Finish();
    Decoder decoder(bytes.data(), bytes.size());
    T decoded;
    visit(decoder, decoded);
    Encoder again;
    visit(again, decoded);
    if (again.Finish() != bytes) {
        throw std::runtime_error("a seed does not decode to what was encoded");
    }
    return bytes;
}

void WriteFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

std::string Slug(const std::string& text) {
    std::string slug;
    for (char c : text) {
        const bool keep = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
        if (keep) {
            slug += c;
        } else if (c >= 'A' && c <= 'Z') {
            slug += static_cast<char>(c - 'A' + 'a');
        } else if (!slug.empty() && slug.back() != '-') {
            slug += '-';
        }
    }
    while (!slug.empty() && slug.back() == '-') {
        slug.pop_back();
    }
    return slug;
}

// The configuration cut before each group header: one seed per group.
std::vector<std::pair<std::string, std::string>> GroupsOf(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> groups;
    size_t start = text.find("\n[");
    while (start != std::string::npos) {
        const size_t next = text.find("\n[", start + 1);
        const std::string part =
            text.substr(start + 1, next == std::string::npos ? std::string::npos : next - start);
        const std::string name = part.substr(1, part.find(']') - 1);
        groups.emplace_back(Slug(name), part);
        start = next;
    }
    return groups;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: %s EXAMPLES_DIR CORPUS_DIR\n", argv[0]);
        return 2;
    }
    const std::string examples = argv[1];
    const std::string corpus = argv[2];
    try {
        // Element sizes of vendor tags come from the vendor tag lookup.
        Lumora::IuiLayer::Init(0, nullptr);
        if (GetVendorTagId == nullptr) {
            throw std::runtime_error("the sibling camera layer could not be loaded");
        }
        for (const char* name : {"photo", "zoom-video", "third-party", "bokeh", "speed"}) {
            const UilayerSim::Scenario scenario =
                UilayerSim::ReadScenarioFile(examples + "/" + name + ".yaml");
            for (size_t i = 0; i < scenario.sessions.size(); ++i) {
                const std::string stem = std::string(name) + "-" + std::to_string(i);
                SessionInput in = SessionOf(scenario, scenario.sessions[i]);
                WriteFile(corpus + "/fuzz_session/" + stem,
                          EncodeChecked(in, [](auto& c, SessionInput& v) { VisitSession(c, v); }));
                // The same session with every log switch on.
                in.logSwitches = 31;
                WriteFile(corpus + "/fuzz_session/" + stem + "-log",
                          EncodeChecked(in, [](auto& c, SessionInput& v) { VisitSession(c, v); }));

                struct Steps {
                    uint8_t log = 0;
                    std::vector<Step> steps;
                };
                Steps steps{4, in.steps};
                WriteFile(corpus + "/fuzz_request_result/" + stem,
                          EncodeChecked(steps, [](auto& c, Steps& v) {
                              c.Int(v.log, uint8_t{0}, uint8_t{31});
                              VisitSteps(c, v.steps);
                          }));
            }
        }
        std::ifstream file(examples + "/device.conf");
        const std::string config((std::istreambuf_iterator<char>(file)),
                                 std::istreambuf_iterator<char>());
        if (config.empty()) {
            throw std::runtime_error("cannot read " + examples + "/device.conf");
        }
        WriteFile(corpus + "/fuzz_config_loader/device",
                  std::vector<uint8_t>(config.begin(), config.end()));
        for (const auto& group : GroupsOf(config)) {
            WriteFile(corpus + "/fuzz_config_loader/group-" + group.first,
                      std::vector<uint8_t>(group.second.begin(), group.second.end()));
        }
    } catch (const std::exception& e) {
        fprintf(stderr, "%s\n", e.what());
        return 1;
    }
    return 0;
}
