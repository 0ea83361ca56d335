// `explain`: why a capability is or is not set on a camera of a replayed
// session (or of one request): the configuration step that set or cleared it
// with that step's log lines, the request contributions that added or removed
// it, the reference's rules for the bit, and the changes of the inputs the
// library read that set (or clear) it, each verified by a rerun.
#ifndef UILAYER_SIM_EXPLAIN_H
#define UILAYER_SIM_EXPLAIN_H

#include <HostConfigText.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "CapabilityReference.h"
#include "core/Report.h"
#include "core/Scenario.h"
#include "core/TraceRecorder.h"
#include "experiment/Change.h"
#include "explain/Candidates.h"
#include "replay/ReplayRecord.h"

namespace UilayerSim {

// A question `explain` cannot answer as asked (exit status 2); the message
// says why in one line.
class ExplainError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct _ExplainQuery {
    std::string capability;          // a name (either name of bit 81) or a bit number
    std::string session;             // its name or 1-based position; empty: the last
    std::string camera = "logical";  // "logical" or a physical camera id
    bool hasFrame = false;
    uint32_t frame = 0;
};

// What a rule read and what this session had there; Failed (Met) when a
// verified change of it sets (clears) the bit.
enum class InputVerdict { Unknown, Met, Failed };

struct _ExplainInput {
    std::string what;   // "config EISTypeMatching/Mode[i]", "camera mode", ...
    std::string value;  // as this session had it
    std::string where;  // "device.conf:12" for configuration keys, else empty
    InputVerdict verdict = InputVerdict::Unknown;
    std::string reason;  // the verified change behind the verdict
};

struct _ExplainRule {
    const Lumora::_CapabilityRule* rule = nullptr;
    std::vector<_ExplainInput> inputs;
    const _ExplainInput* Failed() const;  // the first failed input, or null
};

// One change (or a pair) whose rerun flipped the bit.
struct _ExplainChange {
    std::vector<_Change> changes;
    std::string text;  // as a user makes it
};

// One request contribution that changed the bit.
struct _ExplainContribution {
    std::string text;  // "a buffer of stream preview (role Preview)"
    bool added = true;
};

struct _Explanation {
    uint32_t bit = 0;
    std::string name;
    std::string session;
    uint32_t sessionCamera = 0;  // framework camera id of the session
    int64_t camera = -1;         // -1: the logical camera, else a physical id
    bool hasFrame = false;
    uint32_t frame = 0;
    bool set = false;
    std::vector<std::string> setOn;  // "logical", "camera 2", ... where the bit is set
    // Session caps: the configuration steps behind the bit.
    std::string setBy;
    std::vector<std::string> setByLog;
    std::string clearedBy;
    std::vector<std::string> clearedByLog;
    // Request caps: the contributions that changed it.
    std::vector<_ExplainContribution> contributions;
    // The rules that apply to the answer: those of the step that set the bit,
    // or every rule that could have set it.
    std::vector<_ExplainRule> rules;
    std::vector<_ExplainInput> facts;  // the session facts behind every rule
    // The verified changes that set a clear bit or clear a set one, the
    // shortest first; how many reruns were tried; whether the search of pairs
    // stopped at its bound.
    std::vector<_ExplainChange> changes;
    size_t tried = 0;
    bool pairsStopped = false;
    size_t sessionIndex = 0;
};

// The bit of a capability name or number; throws ExplainError (with a "did
// you mean") for anything else.
uint32_t ParseCapability(const std::string& text);

// Explains the query against a replay recorded with requests.
_Explanation Explain(const Scenario& scenario, const TraceRecorder& recorder,
                     const _ExplainQuery& query);
// The session facts of the replay's report.
void AddFacts(const ReportNode& report, _Explanation* explanation);
// Adds the verified changes and the rules' inputs by rerunning the question's
// session with candidate changes of every input the library read.
void ExplainByExperiment(const Scenario& scenario, size_t session, const std::string& siblingRoot,
                         _Explanation* explanation);
// The caps of the last session of a replay (or of its last request, which
// ScenarioUpTo makes the question's): "L:" and 100 '0'/'1', then " C<id>:"
// and the same for each physical camera; for a session, " M:" and the
// operation mode it was configured with (after the library's rewrites).
std::string CapsProbe(const _ReplayRecord& record, bool hasFrame);
// Whether the bit is set on the camera (-1: logical) in a probe: '1', '0', or
// '?' for an aborted or failed rerun.
char BitOfProbe(const std::string& probe, int64_t camera, uint32_t bit);

// The reruns of one question: the unchanged one (recording what the library
// reads) and one for each candidate change of those inputs, `focus` as for
// CandidateChanges. `scenario` is already cut by ScenarioUpTo.
struct _ExperimentRun {
    std::string baseline;
    std::vector<_Change> candidates;
    std::vector<std::string> probes;  // one per candidate
};
_ExperimentRun RunCandidates(const Scenario& scenario, const _Question& question,
                             const std::vector<Lumora::_CapabilityInput>& focus,
                             const std::string& siblingRoot);

std::string RenderExplanationText(const _Explanation& explanation);
std::string RenderExplanationJson(const _Explanation& explanation);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_EXPLAIN_H
