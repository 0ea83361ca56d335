#include "explain/Explain.h"

#include <HostConfigValues.h>

#include <algorithm>
#include <sstream>

#include "core/Names.h"
#include "replay/Replay.h"
#include "core/Suggest.h"

namespace UilayerSim {

namespace {

using Lumora::_CapabilityRule;
using Lumora::_CapsBitset;
namespace Trace = Lumora::Trace;

// The configuration step that runs a rule's function: InitPackageName is part
// of ParseSessionParams.
std::string StepOfRule(const _CapabilityRule& rule) {
    const std::string step = rule.step;
    return step == "InitPackageName" ? "ParseSessionParams" : step;
}

uint8_t ScopeOfQuery(bool request, int64_t camera) {
    if (request) {
        return camera < 0 ? Lumora::kScopeRequestLogical : Lumora::kScopeRequestPhysical;
    }
    return camera < 0 ? Lumora::kScopeSessionLogical : Lumora::kScopeSessionPhysical;
}

size_t FindSession(const Scenario& scenario, const std::string& wanted) {
    if (scenario.sessions.empty()) {
        throw ExplainError("the scenario has no session");
    }
    if (wanted.empty()) {
        return scenario.sessions.size() - 1;
    }
    std::vector<std::string> names;
    for (size_t i = 0; i < scenario.sessions.size(); ++i) {
        if (scenario.sessions[i].name == wanted) {
            return i;
        }
        names.push_back(scenario.sessions[i].name);
    }
    uint32_t position = 0;
    if (HostPlatform::ParseUInt32(wanted, &position) == HostPlatform::NumberStatus::Ok &&
        position >= 1 && position <= scenario.sessions.size()) {
        return position - 1;
    }
    throw ExplainError("--session: no session named or numbered '" + wanted + "'" +
                       DidYouMean(wanted, names) + "; the scenario has " +
                       std::to_string(scenario.sessions.size()) + " session(s)");
}

int64_t ParseCamera(const std::string& text, const std::vector<uint32_t>& ids) {
    if (text == "logical") {
        return -1;
    }
    uint32_t id = 0;
    if (HostPlatform::ParseUInt32(text, &id) == HostPlatform::NumberStatus::Ok &&
        std::find(ids.begin(), ids.end(), id) != ids.end()) {
        return id;
    }
    std::string known;
    for (uint32_t each : ids) {
        known += ", " + std::to_string(each);
    }
    throw ExplainError("--camera: '" + text + "' is not 'logical' or a physical camera of the " +
                       "session" +
                       (known.empty() ? " (it has none)" : " (" + known.substr(2) + ")"));
}

std::string StreamName(const SessionSetup& setup, int32_t index) {
    if (index >= 0 && static_cast<size_t>(index) < setup.streams.size()) {
        return setup.streams[static_cast<size_t>(index)].name;
    }
    return "#" + std::to_string(index);
}

std::string Number(float value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string CameraText(int32_t camera) {
    return camera < 0 ? "the logical camera" : "camera " + std::to_string(camera);
}

// What one contribution was, in the words of the request.
std::string ContributionText(const Trace::_Contribution& c, const SessionSetup& setup) {
    switch (c.source) {
        case Trace::kSourceZoomRatio:
            return "zoom ratio " + Number(c.zoomRatio) + " (at the 4x QBC threshold) for " +
                   CameraText(c.camera);
        case Trace::kSourceSensorModeList:
            return "sensor mode list value " + std::to_string(c.value) + " for " +
                   CameraText(c.camera);
        case Trace::kSourceWarmStart:
            return "the warm start rule for " + CameraText(c.camera) + " (dol state " +
                   std::to_string(c.value) + ", warm start enable " + std::to_string(c.detail) +
                   ")";
        case Trace::kSourceShdrSupport:
            return "the session lacks CapsSHDR for " + CameraText(c.camera);
        case Trace::kSourceAecFeedback:
            return "the AEC feedback of the last result for " + CameraText(c.camera) +
                   " (exposure count " + std::to_string(c.value) + ")";
        case Trace::kSourceStreamBuffer:
            return "a buffer of stream " + StreamName(setup, c.detail) + " (role " +
                   StreamRoleName(c.value) + ")";
        case Trace::kSourceSetting:
            return "setting vendor tag " + std::to_string(c.tag) + " = " + std::to_string(c.value) +
                   (c.detail != 0 ? " (scene " + std::to_string(c.detail) + ")" : "");
        case Trace::kSourceOperationMode:
            return "the session's operation mode " + std::to_string(c.value);
    }
    return "source " + std::to_string(c.source);
}

bool BitOf(const _CapsBitset& primary, const _CapsBitset* cameras, int64_t camera, uint32_t bit) {
    if (camera < 0) {
        return primary.test(bit);
    }
    return camera < Trace::kCameraCapsSlots && cameras[camera].test(bit);
}

void ExplainRequest(const _RecordedSession& recorded, const SessionSetup& setup,
                    const std::vector<uint32_t>& ids, _Explanation* out) {
    const auto found = recorded.requests.find(out->frame);
    if (found == recorded.requests.end()) {
        throw ExplainError("--frame: no record for the frame " + std::to_string(out->frame) +
                           " in session \"" + setup.name + "\"");
    }
    const _RecordedRequest& request = found->second;
    out->set = BitOf(request.primary, request.cameraCaps.data(), out->camera, out->bit);
    if (request.primary.test(out->bit)) {
        out->setOn.push_back("logical");
    }
    for (uint32_t id : ids) {
        if (id < Trace::kCameraCapsSlots && request.cameraCaps[id].test(out->bit)) {
            out->setOn.push_back("camera " + std::to_string(id));
        }
    }
    for (const Trace::_Contribution& c : request.contributions) {
        const bool before = BitOf(c.primaryBefore, c.cameraBefore, out->camera, out->bit);
        const bool after = BitOf(c.primaryAfter, c.cameraAfter, out->camera, out->bit);
        if (before != after) {
            out->contributions.push_back({ContributionText(c, setup), after});
        }
    }
}

void ExplainSession(const _RecordedSession& recorded, const std::vector<uint32_t>& ids,
                    _Explanation* out) {
    if (recorded.steps.empty()) {
        throw ExplainError("session \"" + out->session + "\" ran no configuration step");
    }
    const _RecordedStep& last = recorded.steps.back();
    const _CapsBitset* caps = last.Caps(out->camera);
    out->set = caps != nullptr && caps->test(out->bit);
    if (last.logical.test(out->bit)) {
        out->setOn.push_back("logical");
    }
    for (uint32_t id : ids) {
        const _CapsBitset* each = last.Caps(id);
        if (each != nullptr && each->test(out->bit)) {
            out->setOn.push_back("camera " + std::to_string(id));
        }
    }
    const _BitHistory history = HistoryOf(recorded, out->bit, out->camera);
    if (history.setBy >= 0) {
        out->setBy = recorded.steps[history.setBy].name;
        out->setByLog = recorded.steps[history.setBy].log;
    }
    if (history.clearedBy >= 0) {
        out->clearedBy = recorded.steps[history.clearedBy].name;
        out->clearedByLog = recorded.steps[history.clearedBy].log;
    }
}

// The rules worth showing: for a set bit those of the step (or request) that
// set it; for a clear bit those that could have set it, then the clearing
// rules of the step that cleared it.
void ChooseRules(_Explanation* out) {
    const uint8_t scope = ScopeOfQuery(out->hasFrame, out->camera);
    std::vector<const _CapabilityRule*> sets;
    std::vector<const _CapabilityRule*> chosen;
    for (const _CapabilityRule* rule : Lumora::RulesOf(out->bit)) {
        if ((rule->scope & scope) == 0) {
            continue;
        }
        const bool setting = rule->effect == Lumora::kEffectSets;
        if (out->set && setting && (out->hasFrame || StepOfRule(*rule) == out->setBy)) {
            chosen.push_back(rule);
        } else if (!out->set && setting) {
            chosen.push_back(rule);
        } else if (!out->set && !setting && !out->clearedBy.empty() &&
                   StepOfRule(*rule) == out->clearedBy) {
            chosen.push_back(rule);
        }
        if (setting) {
            sets.push_back(rule);
        }
    }
    if (chosen.empty() && out->set) {
        chosen = sets;  // the reference names another function of the same work
    }
    for (const _CapabilityRule* rule : chosen) {
        out->rules.push_back({rule, {}});
    }
}

}  // namespace

const _ExplainInput* _ExplainRule::Failed() const {
    for (const _ExplainInput& input : inputs) {
        if (input.verdict == InputVerdict::Failed) {
            return &input;
        }
    }
    return nullptr;
}

uint32_t ParseCapability(const std::string& text) {
    uint32_t bit = 0;
    const HostPlatform::NumberStatus status = HostPlatform::ParseUInt32(text, &bit);
    if (status == HostPlatform::NumberStatus::Ok ||
        status == HostPlatform::NumberStatus::OutOfRange) {
        if (status == HostPlatform::NumberStatus::Ok && bit < Lumora::kCapabilityCount) {
            return bit;
        }
        throw ExplainError("capability bit '" + text + "' is out of range: the bits are 0..99");
    }
    const int found = Lumora::FindCapability(text);
    if (found >= 0) {
        return static_cast<uint32_t>(found);
    }
    throw ExplainError("no capability named '" + text + "'" +
                       DidYouMean(text, AcceptedNames(NameTable::Capabilities)) +
                       "; 'uilayer-sim names caps' lists them");
}

_Explanation Explain(const Scenario& scenario, const TraceRecorder& recorder,
                     const _ExplainQuery& query) {
    _Explanation out;
    out.bit = ParseCapability(query.capability);
    out.name = CapabilityName(out.bit);
    const size_t index = FindSession(scenario, query.session);
    const SessionSetup& setup = scenario.sessions[index];
    if (index >= recorder.Sessions().size()) {
        throw ExplainError("session \"" + setup.name + "\" was not replayed");
    }
    const _RecordedSession& recorded = recorder.Sessions()[index];
    const std::vector<uint32_t> ids = PhysicalCameraIds(scenario, setup);
    out.session = setup.name;
    out.sessionCamera = setup.camera;
    out.camera = ParseCamera(query.camera, ids);
    out.hasFrame = query.hasFrame;
    out.frame = query.frame;
    if (out.hasFrame) {
        ExplainRequest(recorded, setup, ids, &out);
    } else {
        ExplainSession(recorded, ids, &out);
    }
    out.sessionIndex = index;
    ChooseRules(&out);
    return out;
}

void AddFacts(const ReportNode& report, _Explanation* out) {
    const ReportNode* sessions = report.Find("sessions");
    if (sessions == nullptr || out->sessionIndex >= sessions->Items().size()) {
        return;
    }
    if (const ReportNode* facts = sessions->Items()[out->sessionIndex].Find("facts")) {
        for (const auto& entry : facts->Entries()) {
            _ExplainInput input;
            input.what = entry.first;
            input.value = entry.second.Scalar();
            out->facts.push_back(input);
        }
    }
}

}  // namespace UilayerSim
