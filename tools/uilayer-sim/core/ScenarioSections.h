// The scenario reader's sections: the device (DeviceReader.cpp), the
// configuration, properties and files (ScenarioReader.cpp), the sessions with
// their streams and tags (SessionReader.cpp) and the steps (StepReader.cpp).
#ifndef UILAYER_SIM_SCENARIO_SECTIONS_H
#define UILAYER_SIM_SCENARIO_SECTIONS_H

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/ScenarioFields.h"

namespace UilayerSim {

// Properties and device files: names with their texts.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

// Reading state of one session: its stream names and the frames seen so far.
struct SessionState {
    std::vector<std::string> streamNames;
    // Physical ids of the device's cameras: the cameras a query can name.
    std::set<uint32_t> cameraIds;
    // Framework ids of the device's cameras: what a stream's physical camera id names.
    std::set<int64_t> frameworkIds;
    uint32_t nextFrame = 0;
};

class SectionReader : public ScenarioFields {
public:
    SectionReader(std::string file, std::string baseDir)
        : ScenarioFields(std::move(file)), m_baseDir(std::move(baseDir)) {}

    // The whole scenario; without `needSessions`, sessions may be left out.
    Scenario Read(const YAML::Node& root, bool needSessions = true);
    // The cameras of a device description into `scenario`.
    void ReadDevice(const YAML::Node& node, Scenario* scenario);
    // One tag value as a session's `params` writes it.
    TagValue ReadTag(const YAML::Node& node, const std::string& field);

private:
    // "logical" or a query type number; `max` limits the physical ids.
    uint32_t QueryCamera(const YAML::Node& parent, const std::string& field, uint32_t max,
                         const SessionState& state) const {
        const YAML::Node node = parent["camera"];
        if (!node.IsDefined()) {
            return kLogicalCamera;
        }
        const std::string name = Path(field, "camera");
        if (Text(node, name) == "logical") {
            return kLogicalCamera;
        }
        const auto id = static_cast<uint32_t>(Integer(node, name, 0, UINT32_MAX));
        CheckCameraId(node, name, id, state);
        if (id > max) {
            Fail(node, name,
                 "camera " + std::to_string(id) + " is outside 0.." + std::to_string(max) +
                     " for this query");
        }
        return id;
    }

    // A physical camera id a query names must be one of the device's.
    void CheckCameraId(const YAML::Node& node, const std::string& field, uint32_t id,
                       const SessionState& state) const {
        if (state.cameraIds.count(id) == 0) {
            Fail(node, field, "no camera " + std::to_string(id) + " in the device");
        }
    }

    // A path as written in the scenario, relative to the scenario's directory.
    std::string Resolve(const std::string& path) const {
        return path.empty() || path.front() == '/' ? path : m_baseDir + "/" + path;
    }

    CameraSetup ReadCamera(const YAML::Node& node, const std::string& field);
    void ReadConfiguration(const YAML::Node& root, Scenario* scenario);
    NamedTexts ReadProperties(const YAML::Node& node, const std::string& field) const;
    NamedTexts ReadFiles(const YAML::Node& node, const std::string& field) const;
    SessionSetup ReadSession(const YAML::Node& node, const std::string& field,
                             const Scenario& scenario);
    StreamSetup ReadStream(const YAML::Node& node, const std::string& field,
                           const SessionState& state);
    // A client package or activity name, no longer than the library keeps.
    std::string ClientName(const YAML::Node& node, const std::string& field) const;
    // A usage bit name or a number of up to 64 bits.
    uint64_t Usage(const YAML::Node& node, const std::string& field) const;
    std::vector<TagValue> ReadTags(const YAML::Node& node, const std::string& field);
    Step ReadStep(const YAML::Node& node, const std::string& field, SessionState* state);
    RequestSetup ReadRequest(const YAML::Node& node, const std::string& field,
                             const SessionState& state, bool needFrame);
    ResultSetup ReadResult(const YAML::Node& node, const std::string& field,
                           const SessionState& state, bool needFrame);

    std::string m_baseDir;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCENARIO_SECTIONS_H
