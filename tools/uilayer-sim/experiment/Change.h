// One change to a scenario's inputs, as a user would make it: a configuration
// key, a property, a tag of the session parameters, a request or a result, a
// stream or a device file. Experiments apply changes to a copy of the scenario
// and replay it; `whatif` and `diff` take them from the command line and from
// two configurations.
#ifndef UILAYER_SIM_CHANGE_H
#define UILAYER_SIM_CHANGE_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/Scenario.h"

namespace UilayerSim {

enum class ChangeKind {
    Config,
    Property,
    SessionTag,
    SessionParam,  // a standard tag of the session parameters, or the operation mode
    RequestTag,
    RequestSetting,
    ResultTag,
    Stream,
    File,
};

// "0x8010": how the configuration and the reports write operation modes.
std::string HexText(uint64_t value);

// "config", "property", "session-tag", ...
const char* ChangeKindName(ChangeKind kind);

// The target of a session parameter change that sets the operation mode.
constexpr const char* kOperationModeTarget = "operation_mode";

struct _Change {
    ChangeKind kind = ChangeKind::Config;
    // Config: "Group/Key"; property or file: its name or path; a tag: its
    // vendor index or standard name; stream: the stream's name.
    std::string target;
    bool remove = false;  // unset, remove, absent
    // Config: the values, each as the file writes it; one value when `field`
    // is set, which then replaces that value alone.
    std::vector<std::string> values;
    int field = -1;
    // Config: the row `field` changes a value of when the key is not there
    // yet (a new row copied from another).
    std::vector<std::string> base;
    // Config: the key's group and key.
    std::string group;
    std::string key;
    // Tags: the value to set (its tag and type included).
    TagValue tag;
    // Stream: the field changed ("format", "usage", "data_space"), or ""
    // to add `stream` (remove set: to remove the stream).
    std::string streamField;
    StreamSetup stream;
    int64_t number = 0;    // the new value of a stream field or the operation mode
    int64_t previous = 0;  // a stream field's value before
    // A value the session itself uses (its operation mode, a camera id...),
    // or a change other than a configuration value: explain searches pairs
    // among these.
    bool sessionValue = false;
};

// A change the scenario cannot take (a file the configuration lacks a line
// for, a value the store cannot read); the message names it.
class ChangeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Applies `changes` in order to `scenario`: session and stream changes to
// session `session`, request and result changes to the request and result of
// frame `frame` in that session (when `hasFrame`).
void ApplyChanges(const std::vector<_Change>& changes, size_t session, bool hasFrame,
                  uint32_t frame, Scenario* scenario);

// The change as a user would make it: "device.conf:28: OemDecouplePipelines/
// isEnableMIPMAP = true", "property persist.x = 1", "remove stream \"video\"".
std::string ChangeText(const _Change& change, const Scenario& scenario);
// The new value alone, for JSON ("true", "unset", "removed").
std::string ChangeValue(const _Change& change);

// A change of a configuration key: `values` as written, or removed.
_Change ConfigChange(const std::string& group, const std::string& key,
                     const std::vector<std::string>& values, bool remove = false);
// Two changes of values of one key as one change of the key; other changes
// as they are.
std::vector<_Change> Merged(const std::vector<_Change>& changes, const Scenario& scenario);
// The values of a configuration text line's right side, split as the store splits them.
std::vector<std::string> SplitConfigValues(const std::string& text);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_CHANGE_H
