// Reads a scenario file (YAML) into plain data and checks it completely, so
// that the library never sees a half-read scenario.
#ifndef UILAYER_SIM_SCENARIO_READER_H
#define UILAYER_SIM_SCENARIO_READER_H

#include <stdexcept>
#include <string>

#include <HostFiles.h>

#include "core/Scenario.h"

namespace UilayerSim {

// A mistake in a scenario (or in the configuration text it names): the file,
// the 1-based line, the field path ("sessions[0].streams[1].format") and why.
// Several mistakes of one file come as one error, a line each.
class ScenarioError : public std::runtime_error {
public:
    ScenarioError(const std::string& file, int line, const std::string& field,
                  const std::string& reason);
    explicit ScenarioError(const std::string& lines) : std::runtime_error(lines) {}
};

// Reads and checks the scenario at `path`; throws ScenarioError.
Scenario ReadScenarioFile(const std::string& path);
// The same for text already in memory; `path` names it in errors and anchors
// a relative configuration path. Without `needSessions`, sessions may be left out.
Scenario ReadScenarioText(const std::string& text, const std::string& path,
                          bool needSessions = true);

// Reads a device description (a map with `cameras`, as `device:` names it) or
// a scenario, whose sessions may be left out; a device description gives a
// scenario with no configuration, properties, files or sessions. Throws
// ScenarioError.
Scenario ReadDeviceOrScenarioFile(const std::string& path);

// Reads one tag value written as in a session's `params`
// ("{vendor: 160, string: video_mode}"); `origin` names it in errors. Throws
// ScenarioError.
TagValue ReadTagText(const std::string& text, const std::string& origin);

// Reads a whole file (see HostFiles.h); "-" reads standard input.
bool ReadWholeFile(const std::string& path, std::string* text, std::string* reason = nullptr);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCENARIO_READER_H
