// The capability reference: every bit 0..99 and the rules of the library that
// set or clear it; the explainer and docs/capabilities.md read it.
#ifndef LUMORA_CAPABILITY_REFERENCE_H
#define LUMORA_CAPABILITY_REFERENCE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "common/ConfigKeys.h"

namespace Lumora {

constexpr uint32_t kCapabilityCount = 100;

// Which caps set a rule writes (bit flags).
enum CapabilityScope : uint8_t {
    kScopeSessionLogical = 1,   // the session caps of the logical camera
    kScopeSessionPhysical = 2,  // the session caps of a physical camera
    kScopeRequestLogical = 4,   // a request's primary caps
    kScopeRequestPhysical = 8,  // a request's caps of a physical camera
};

enum CapabilityEffect : uint8_t { kEffectSets, kEffectClears };

// One way a bit is set or cleared.
struct _CapabilityRule {
    uint32_t bit;
    uint8_t scope;  // CapabilityScope flags of the sets it writes
    CapabilityEffect effect;
    const char* step;       // the library function that applies it
    const char* condition;  // when, in one line
    // What it reads: items "kind:value" separated by "; " (see ParseInputs).
    const char* inputs;
};

struct _Capability {
    uint32_t bit;
    const char* name;       // the DesiredSupportCaps name; null for an unassigned bit
    const char* otherName;  // a second name of the same bit, or null
    const char* meaning;
};

// Kinds of input a rule reads.
enum CapabilityInputKind : uint8_t {
    kInputConfig,          // "config:<EConfigKey>": a key of the library's table
    kInputProperty,        // "property:name": a system property
    kInputSessionTag,      // "session-tag:N": vendor tag index N of the session parameters
    kInputSessionParam,    // "session-param:NAME": a standard tag of the session parameters
    kInputRequestTag,      // "request-tag:N": vendor tag index N of the request settings
    kInputRequestSetting,  // "request-setting:NAME": a standard tag of the request settings
    kInputResultTag,       // "result-tag:N": vendor tag index N of the last result
    kInputOperationMode,   // "operation-mode:TEXT": the session's operation mode
    kInputCameraMode,      // "camera-mode:TEXT": the client's camera mode
    kInputClient,          // "client:TEXT": a fact about the client (system camera, ...)
    kInputStream,          // "stream:TEXT": a fact about the configured streams
    kInputRequest,         // "request:TEXT": a fact about the request
    kInputCaps,            // "caps:N": another session bit
    kInputSession,         // "session:TEXT": another session fact
    kInputFile,            // "file:PATH": a device file
};

struct _CapabilityInput {
    CapabilityInputKind kind;
    std::string value;  // for kInputConfig "Group/Key", the key as ConfigKeyText writes it
    std::string group;  // kInputConfig only
    std::string key;    // kInputConfig only
    EConfigKey configKey = EConfigKey::Count;  // kInputConfig only
};

// The 100 bits, index = bit.
const _Capability* Capabilities();
// Every rule, ordered by bit, then as the library applies them.
const _CapabilityRule* CapabilityRules();
size_t CapabilityRuleCount();

// The bit of a name (either name of bit 81); -1 for an unknown name.
int FindCapability(const std::string& name);
// The rules of one bit, in order.
std::vector<const _CapabilityRule*> RulesOf(uint32_t bit);
// The scopes a bit lives in: the union of its rules' scopes.
uint8_t ScopesOf(uint32_t bit);
// The inputs of a rule; an item of an unknown kind or configuration key is left out.
std::vector<_CapabilityInput> ParseInputs(const _CapabilityRule& rule);

// A key of the library's table as the reference writes it: the key, "Mode[i]"
// for rows, "Size[sensor]", "<sensor name>" or "<package>[i]" for keys named
// at run time.
std::string ConfigKeyText(EConfigKey key);
// "Group/Key" of a key of the library's table, the key as ConfigKeyText writes it.
std::string ConfigKeyPath(EConfigKey key);

// The text of one scope flag ("session logical", ...).
const char* ScopeText(CapabilityScope scope);
const char* InputKindText(CapabilityInputKind kind);

}  // namespace Lumora

#endif  // LUMORA_CAPABILITY_REFERENCE_H
