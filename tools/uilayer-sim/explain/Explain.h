// `explain`: why a capability is or is not set on a camera of a replayed
// session (or of one request): the configuration step that set or cleared it
// with that step's log lines, the request contributions that added or removed
// it, and the reference's rules for the bit with their inputs as this session
// had them, down to the first input that kept a rule from setting it.
#ifndef UILAYER_SIM_EXPLAIN_H
#define UILAYER_SIM_EXPLAIN_H

#include <HostConfigText.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "CapabilityReference.h"
#include "core/Scenario.h"
#include "replay/SessionFacts.h"
#include "core/TraceRecorder.h"

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

// What a rule read and what this session had there.
enum class InputVerdict { Unknown, Met, Failed };

struct _ExplainInput {
    std::string what;   // "config EISTypeMatching/Mode[i]", "camera mode", ...
    std::string value;  // as this session had it
    std::string where;  // "device.conf:12" for configuration keys, else empty
    InputVerdict verdict = InputVerdict::Unknown;
    std::string reason;  // for a failed input: why, in one line
};

struct _ExplainRule {
    const Lumora::_CapabilityRule* rule = nullptr;
    std::vector<_ExplainInput> inputs;
    const _ExplainInput* Failed() const;  // the first failed input, or null
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
};

// The bit of a capability name or number; throws ExplainError (with a "did
// you mean") for anything else.
uint32_t ParseCapability(const std::string& text);

// Everything the inputs of a rule are evaluated against.
struct _InputContext {
    const Scenario* scenario = nullptr;
    const SessionSetup* setup = nullptr;
    const _RecordedSession* recorded = nullptr;
    const _RecordedFacts* facts = nullptr;
    const HostPlatform::ConfigText* config = nullptr;
    int64_t camera = -1;
    const RequestSetup* request = nullptr;  // the request of the explained frame
};

// The inputs of `rule` as this session had them, in the rule's order; rules
// that set a bit get a verdict where the simulator can tell.
std::vector<_ExplainInput> EvaluateInputs(const Lumora::_CapabilityRule& rule,
                                          const _InputContext& context);
// The facts every rule of a session may read, for the explanation's footer.
std::vector<_ExplainInput> SessionFactInputs(const _InputContext& context);

// Explains the query against a replay recorded with requests.
_Explanation Explain(const Scenario& scenario, const TraceRecorder& recorder,
                     const _ExplainQuery& query);

std::string RenderExplanationText(const _Explanation& explanation);
std::string RenderExplanationJson(const _Explanation& explanation);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_EXPLAIN_H
