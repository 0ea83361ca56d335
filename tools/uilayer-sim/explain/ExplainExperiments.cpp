// Explains a bit by experiment: the question's session is replayed once with
// the host recording what the library reads, then once for every candidate
// change of those inputs; a change is reported only when its own rerun flipped
// the bit. When no single change sets a clear bit, pairs of changes to inputs
// of the bit's rules are tried, within a bound.
#include <HostConfigReads.h>
#include <HostConfigText.h>

#include <algorithm>
#include <sstream>

#include <HostKit/Metadata.h>

#include "common/VendorTags.h"
#include "core/Names.h"
#include "explain/Candidates.h"
#include "explain/Explain.h"
#include "explain/PairSearch.h"
#include "experiment/Experiments.h"

namespace UilayerSim {

namespace {

using HostPlatform::ConfigRead;
using HostPlatform::ConfigReadKind;

// Pairs tried at most for one question: a few hundred milliseconds of reruns.
constexpr size_t kMaxPairs = 1500;
// Pairs run at once; the search stops after the first batch with an answer.
constexpr size_t kPairBatch = 250;
// Bits whose rules' inputs are searched in full for one question: the bit and
// the bits its rules read, and theirs, up to this many.
constexpr size_t kMaxFocusBits = 8;
// Requests of a repeat kept before the request a question is about: the last
// result before it is the one thing a request's caps read from earlier ones.
constexpr uint32_t kKeptRepeats = 2;

std::string Bits(const Lumora::_CapsBitset& caps) {
    std::string bits(Lumora::_CapsBitset::kBitCount, '0');
    for (uint32_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
        bits[bit] = caps.test(bit) ? '1' : '0';
    }
    return bits;
}

}  // namespace

char BitOfProbe(const std::string& probe, int64_t camera, uint32_t bit) {
    const std::string label = camera < 0 ? "L:" : "C" + std::to_string(camera) + ":";
    const size_t at = probe.find(label);
    if (at == std::string::npos || at + label.size() + bit >= probe.size()) {
        return '?';
    }
    return probe[at + label.size() + bit];
}

namespace {

// Metadata reads go by tag id, which only the process that loaded the sibling
// layer can turn back into a vendor index: the key says "vendor" for those.
std::string PackReads(std::vector<ConfigRead> reads) {
    std::string text;
    for (ConfigRead& read : reads) {
        for (const Lumora::_VendorTagInfo& info : Lumora::kVendorTags) {
            if (read.kind == ConfigReadKind::Metadata &&
                HostKit::VendorTagId(info.index) == read.tag) {
                read.key = "vendor";
                read.tag = info.index;
                break;
            }
        }
        text += std::to_string(static_cast<int>(read.kind)) + "\t" + read.group + "\t" + read.key +
                "\t" + std::to_string(read.tag) + "\n";
    }
    return text;
}

std::vector<ConfigRead> UnpackReads(const std::string& text) {
    std::vector<ConfigRead> reads;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string kind, tag;
        ConfigRead read;
        if (std::getline(fields, kind, '\t') && std::getline(fields, read.group, '\t') &&
            std::getline(fields, read.key, '\t') && std::getline(fields, tag)) {
            read.kind = static_cast<ConfigReadKind>(std::stoi(kind));
            read.tag = static_cast<uint32_t>(std::stoul(tag));
            reads.push_back(read);
        }
    }
    return reads;
}

// One field of a stream as the scenario names it.
std::string StreamFieldText(const StreamSetup& stream, const std::string& field) {
    if (field == "format") {
        return NameOfNumber(NameTable::PixelFormats, stream.format);
    }
    if (field == "data_space") {
        return NameOfNumber(NameTable::DataSpaces, stream.dataSpace);
    }
    if (field == "stream_use_case") {
        return NameOfNumber(NameTable::StreamUseCases, stream.useCase);
    }
    if (field == "physical_camera_id") {
        return stream.physicalId.empty() ? "logical" : "'" + stream.physicalId + "'";
    }
    const std::pair<const char*, int64_t> numbers[] = {
        {"usage", stream.usage},
        {"width", stream.width},
        {"height", stream.height},
        {"stream_type", stream.streamType},
        {"ext_stream_mode", stream.extMode},
        {"dynamic_range_profile", stream.dynamicRangeProfile}};
    for (const auto& number : numbers) {
        if (field == number.first) {
            return field == "usage" ? HexText(static_cast<uint64_t>(number.second))
                                    : std::to_string(number.second);
        }
    }
    return std::to_string(stream.width) + "x" + std::to_string(stream.height) + " " +
           NameOfNumber(NameTable::PixelFormats, stream.format);
}

// The value an input has in the scenario, where the scenario says it.
void DescribeInput(const Lumora::_CapabilityInput& in, const Scenario& scenario, size_t session,
                   const std::string& probe, _ExplainInput* input) {
    const SessionSetup& setup = scenario.sessions[session];
    if (in.kind == Lumora::kInputConfig) {
        const HostPlatform::ConfigText text = HostPlatform::ReadConfigText(scenario.configText);
        const HostPlatform::ConfigGroup* group = text.Find(in.group);
        const HostPlatform::ConfigKey* key = group != nullptr ? group->Find(in.key) : nullptr;
        if (group == nullptr) {
            input->value = "group absent";
        } else if (key != nullptr) {
            for (const std::string& value : key->values) {
                input->value += (input->value.empty() ? "" : ", ") + value;
            }
            input->where = scenario.configName + ":" + std::to_string(key->line);
        }
    } else if (in.kind == Lumora::kInputProperty) {
        // Properties stay set from one session to the next.
        input->value = "unset";
        for (size_t s = 0; s <= session; ++s) {
            for (const auto* list : {&scenario.properties, &scenario.sessions[s].properties}) {
                for (const auto& property : *list) {
                    input->value =
                        property.first == in.value ? "'" + property.second + "'" : input->value;
                }
            }
        }
    } else if (in.kind == Lumora::kInputCaps && !probe.empty()) {
        // Where the rerun without changes has the session bit.
        const uint32_t bit = static_cast<uint32_t>(std::stoul(in.value));
        input->value = BitOfProbe(probe, -1, bit) == '1' ? "set on the logical camera" : "";
        for (size_t at = probe.find(" C"); at != std::string::npos; at = probe.find(" C", at + 1)) {
            const int64_t camera = std::stoll(probe.substr(at + 2));
            if (BitOfProbe(probe, camera, bit) == '1') {
                input->value += (input->value.empty() ? "set on camera " : ", camera ") +
                                std::to_string(camera);
            }
        }
        input->value = input->value.empty() ? "not set" : input->value;
    } else if (in.kind == Lumora::kInputStream) {
        for (const StreamSetup& stream : setup.streams) {
            input->value += (input->value.empty() ? "" : ", ") + stream.name + " " +
                            StreamFieldText(stream, in.value);
        }
    } else if (in.kind == Lumora::kInputOperationMode) {
        input->value = HexText(setup.operationMode);
    } else if (in.kind == Lumora::kInputSessionTag) {
        _Change tag;
        tag.kind = ChangeKind::SessionTag;
        input->value = "absent";
        for (const TagValue& value : setup.params) {
            if (value.vendor && std::to_string(value.tag) == in.value) {
                tag.tag = value;
                input->value = ChangeValue(tag);
            }
        }
    }
}

}  // namespace

std::string CapsProbe(const _ReplayRecord& record, bool hasFrame) {
    if (record.sessions.empty()) {
        return "";
    }
    const _SessionRecord& session = record.sessions.back();
    if (!session.aborted.empty()) {
        return "";  // the library aborted the process: no caps
    }
    if (hasFrame) {
        if (session.steps.empty()) {
            return "";
        }
        const _StepRecord& step = session.steps.back();
        std::string probe = "L:" + Bits(step.caps);
        for (const auto& camera : step.cameraCaps) {
            probe += " C" + std::to_string(camera.first) + ":" + Bits(camera.second);
        }
        return probe;
    }
    std::string probe = "L:" + Bits(session.logicalCaps);
    for (const auto& camera : session.physicalCaps) {
        probe += " C" + std::to_string(camera.first) + ":" + Bits(camera.second);
    }
    return probe + " M:" + std::to_string(session.configuredOperationMode);
}

_ExperimentRun RunCandidates(const Scenario& scenario, const _Question& question,
                             const std::vector<Lumora::_CapabilityInput>& focus,
                             const std::string& siblingRoot) {
    const auto rerun = [&](const std::vector<_Change>& changes) {
        return CapsProbe(ReplayWith(scenario, changes, question.session, question.hasFrame,
                                    question.frame, siblingRoot),
                         question.hasFrame);
    };
    const std::vector<std::string> baseline = RunIsolated(1, [&](size_t) {
        HostPlatform::TakeConfigurationReads();
        HostPlatform::SetConfigurationReadRecording(true);
        const std::string probe = rerun({});
        HostPlatform::SetConfigurationReadRecording(false);
        return probe + "\n" + PackReads(HostPlatform::TakeConfigurationReads());
    });
    _ExperimentRun run;
    const size_t cut = baseline[0].find('\n');
    if (cut == std::string::npos) {
        return run;
    }
    run.baseline = baseline[0].substr(0, cut);
    _Question asked = question;
    const size_t mode = run.baseline.find(" M:");
    asked.configuredMode = mode != std::string::npos
                               ? static_cast<uint32_t>(std::stoul(run.baseline.substr(mode + 3)))
                               : scenario.sessions[question.session].operationMode;
    run.candidates =
        CandidateChanges(scenario, asked, UnpackReads(baseline[0].substr(cut + 1)), focus);
    run.probes =
        RunIsolated(run.candidates.size(), [&](size_t i) { return rerun({run.candidates[i]}); });
    return run;
}

void ExplainByExperiment(const Scenario& full, size_t session, const std::string& siblingRoot,
                         _Explanation* out) {
    _Question question;
    question.session = session;
    question.hasFrame = out->hasFrame;
    question.frame = out->frame;
    for (const Lumora::_CapabilityRule* rule : Lumora::RulesOf(out->bit)) {
        question.words += std::string(rule->condition) + "\n";
    }
    // Reruns leave out the sessions before the question's (their properties
    // and files stay) and all but the last requests of each repeat before
    // its request, as long as that changes no caps of the unchanged rerun.
    Scenario scenario = ScenarioUpTo(full, session, out->hasFrame, out->frame, kKeptRepeats);
    Scenario alone = scenario;
    for (size_t s = 0; s < session; ++s) {
        const SessionSetup& earlier = scenario.sessions[s];
        alone.properties.insert(alone.properties.end(), earlier.properties.begin(),
                                earlier.properties.end());
        alone.files.insert(alone.files.end(), earlier.files.begin(), earlier.files.end());
    }
    alone.sessions.erase(alone.sessions.begin(), alone.sessions.begin() + session);
    const auto rerun = [&](const std::vector<_Change>& changes) {
        return CapsProbe(
            ReplayWith(scenario, changes, question.session, out->hasFrame, out->frame, siblingRoot),
            out->hasFrame);
    };
    const std::vector<std::string> unchanged = RunIsolated(2, [&](size_t i) {
        return CapsProbe(ReplayWith(i == 0 ? scenario : alone, {}, i == 0 ? session : 0,
                                    out->hasFrame, out->frame, siblingRoot),
                         out->hasFrame);
    });
    if (unchanged[1] == unchanged[0] &&
        BitOfProbe(unchanged[0], out->camera, out->bit) == (out->set ? '1' : '0')) {
        scenario = alone;
        question.session = 0;
    } else if (BitOfProbe(unchanged[0], out->camera, out->bit) != (out->set ? '1' : '0')) {
        scenario = ScenarioUpTo(full, session, out->hasFrame, out->frame);
    }
    // The inputs of the bit's rules, and of the rules of the bits they read.
    std::vector<Lumora::_CapabilityInput> focus;
    std::vector<uint32_t> bits = {out->bit};
    for (size_t b = 0; b < bits.size() && b < kMaxFocusBits; ++b) {
        for (const Lumora::_CapabilityRule* rule : Lumora::RulesOf(bits[b])) {
            for (const Lumora::_CapabilityInput& input : Lumora::ParseInputs(*rule)) {
                focus.push_back(input);
                const uint32_t read = input.kind == Lumora::kInputCaps
                                          ? static_cast<uint32_t>(std::stoul(input.value))
                                          : bits.front();
                if (std::find(bits.begin(), bits.end(), read) == bits.end()) {
                    bits.push_back(read);
                }
            }
        }
    }
    const _ExperimentRun run = RunCandidates(scenario, question, focus, siblingRoot);
    const std::vector<_Change>& candidates = run.candidates;
    const std::vector<std::string>& probes = run.probes;
    const char before = BitOfProbe(run.baseline, out->camera, out->bit);
    if (before == '?') {
        return;
    }
    out->tried = candidates.size();
    for (size_t i = 0; i < candidates.size(); ++i) {
        const char after = BitOfProbe(probes[i], out->camera, out->bit);
        if (after != '?' && after != before) {
            out->changes.push_back({{candidates[i]}, ChangeText(candidates[i], full)});
        }
    }
    // Pairs of changes to what the bit's rules read, when no single change sets it.
    std::vector<std::pair<size_t, size_t>> pairs;
    if (out->changes.empty() && !out->set) {
        _PairQuestion asked;
        asked.bit = out->bit;
        asked.camera = out->camera;
        asked.hasFrame = out->hasFrame;
        asked.session = &scenario.sessions[question.session];
        asked.words = question.words;
        asked.baseline = run.baseline;
        asked.candidates = &candidates;
        asked.probes = &probes;
        pairs = PairsToTry(asked, kMaxPairs, &out->pairsStopped);
    }
    // In batches, most promising first; the search ends with the batch that
    // found an answer.
    std::vector<std::string> pairProbes;
    for (size_t first = 0; first < pairs.size() && out->changes.empty(); first += kPairBatch) {
        const size_t count = std::min(kPairBatch, pairs.size() - first);
        const std::vector<std::string> batch = RunIsolated(count, [&](size_t i) {
            const auto& pair = pairs[first + i];
            return rerun({candidates[pair.first], candidates[pair.second]});
        });
        pairProbes.insert(pairProbes.end(), batch.begin(), batch.end());
        if (std::any_of(batch.begin(), batch.end(), [&](const std::string& probe) {
                const char after = BitOfProbe(probe, out->camera, out->bit);
                return after != '?' && after != before;
            })) {
            break;
        }
    }
    out->tried += pairProbes.size();
    for (size_t i = 0; i < pairProbes.size(); ++i) {
        const char after = BitOfProbe(pairProbes[i], out->camera, out->bit);
        if (after != '?' && after != before) {
            const std::vector<_Change> pair =
                Merged({candidates[pairs[i].first], candidates[pairs[i].second]}, full);
            const std::string text =
                pair.size() == 1 ? ChangeText(pair[0], full)
                                 : ChangeText(pair[0], full) + " and " + ChangeText(pair[1], full);
            // Two changes that merge into one edit of a row say the same.
            const bool said =
                std::any_of(out->changes.begin(), out->changes.end(),
                            [&](const _ExplainChange& change) { return change.text == text; });
            if (!said) {
                out->changes.push_back({pair, text});
            }
        }
    }
    std::stable_sort(out->changes.begin(), out->changes.end(),
                     [](const _ExplainChange& a, const _ExplainChange& b) {
                         return a.changes.size() != b.changes.size()
                                    ? a.changes.size() < b.changes.size()
                                    : a.text.size() < b.text.size();
                     });
    // Each rule's inputs as the scenario has them; an input a verified change
    // of which flips the bit is the one that held it (or holds it).
    for (_ExplainRule& rule : out->rules) {
        for (const Lumora::_CapabilityInput& in : Lumora::ParseInputs(*rule.rule)) {
            _ExplainInput input;
            input.what = std::string(Lumora::InputKindText(in.kind)) + " " + in.value;
            DescribeInput(in, full, session, out->hasFrame ? "" : run.baseline, &input);
            for (const _ExplainChange& change : out->changes) {
                if (input.verdict == InputVerdict::Unknown && change.changes.size() == 1 &&
                    ChangeTouches(change.changes[0], in)) {
                    input.verdict = out->set ? InputVerdict::Met : InputVerdict::Failed;
                    input.reason = (out->set ? "cleared by: " : "set by: ") + change.text;
                }
            }
            rule.inputs.push_back(input);
        }
    }
}

}  // namespace UilayerSim
