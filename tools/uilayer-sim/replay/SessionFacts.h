// Facts about a configured session that the rules read and no query of the
// library returns: the client's kind, the set's camera name used for table
// lookups, the generic system image state and the properties behind it, the
// wireless charging state. Shown once per session in the report and by
// `explain`.
#ifndef UILAYER_SIM_SESSION_FACTS_H
#define UILAYER_SIM_SESSION_FACTS_H

#include <cstdint>
#include <map>
#include <string>

#include "core/Report.h"

namespace UilayerSim {

struct _RecordedSession;

// A system property as the library reads it.
struct _PropertyValue {
    std::string name;
    bool set = false;
    std::string value;         // the property's value, or the library's default
    std::string defaultValue;  // what the library uses when it is unset
};

// Generic system image: "ro.product.brand" or "ro.product.system.brand"
// begins with "Android", or "ro.build.product" begins with "generic".
struct _GsiState {
    _PropertyValue brand;
    _PropertyValue systemBrand;
    _PropertyValue buildProduct;
    bool gsi = false;
};

// Wireless charging as the multi-camera zoom step sees it: the state file
// reads 1 and the switch EConfigKey::SatFallbackWireless is true.
struct _WirelessState {
    bool fileRead = false;
    int value = 0;
    bool enabled = false;  // the configuration switch
    bool on = false;
};

extern const char* const kWirelessOnlinePath;

// Reads a property now, with the default the library uses.
_PropertyValue ReadProperty(const std::string& name, const std::string& defaultValue);
_GsiState ReadGsiState();
// `files`: the device files written so far (device path -> content);
// `switchText`: the configuration value of the switch, empty when absent.
_WirelessState WirelessStateOf(const std::map<std::string, std::string>& files,
                               const std::string& switchText);

// "the set of 2 cameras has no set name" and the like: why the name the
// tables are looked up by is what it is.
struct _RecordedFacts;
std::string TableCameraNameNote(const _RecordedFacts& facts);

// The facts of a session after its configuration.
ReportNode FactsNode(const _RecordedSession& session, uint32_t requestedMode);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SESSION_FACTS_H
