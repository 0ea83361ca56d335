#include "core/ScenarioReader.h"

#include <cutils/properties.h>
#include <system/camera_metadata.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <cstdlib>
#include <initializer_list>
#include <set>

#include <HostConfigText.h>
#include <HostConfigValues.h>

#include "core/NumberText.h"
#include "core/Suggest.h"
#include "common/VendorTags.h"

namespace UilayerSim {

namespace {

// Properties and device files: names with their texts.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

constexpr const char* kSiblingPath = "/odm/lib64/hw/camera.lumora.v2.so";
constexpr size_t kMaxPhysicalCameras = 8;
constexpr size_t kMaxSensorModes = 32;
constexpr size_t kMaxAecRecords = 8;
constexpr int64_t kMaxRepeat = 10000000;

std::string Join(std::initializer_list<const char*> names) {
    std::string text;
    for (const char* name : names) {
        if (!text.empty()) {
            text += ", ";
        }
        text += name;
    }
    return text;
}

// Optional sign, then decimal digits or 0x and hexadecimal digits, within the
// range of a signed 64-bit value.
bool ParseIntegerText(const std::string& text, int64_t* value) {
    bool negative = false;
    uint64_t magnitude = 0;
    if (HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude) !=
            HostPlatform::NumberStatus::Ok ||
        magnitude > (negative ? uint64_t{1} << 63 : (uint64_t{1} << 63) - 1)) {
        return false;
    }
    *value = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    return true;
}

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string BaseName(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

YAML::Node LoadYaml(const std::string& text, const std::string& path) {
    try {
        return YAML::Load(text);
    } catch (const YAML::Exception& error) {
        throw ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "",
                            "not valid YAML: " + error.msg);
    }
}

// Reading state of one session: its stream names and the frames seen so far.
struct SessionState {
    std::vector<std::string> streamNames;
    // Physical ids of the device's cameras: the cameras a query can name.
    std::set<uint32_t> cameraIds;
    uint32_t nextFrame = 0;
};

class Reader {
public:
    Reader(std::string file, std::string baseDir)
        : m_file(std::move(file)), m_baseDir(std::move(baseDir)) {}

    Scenario Read(const YAML::Node& root);
    // The cameras of a device description into `scenario`.
    void ReadDevice(const YAML::Node& node, Scenario* scenario);

private:
    [[noreturn]] void Fail(const YAML::Node& node, const std::string& field,
                           const std::string& reason) const {
        throw ScenarioError(m_file, LineOf(node), field, reason);
    }

    static int LineOf(const YAML::Node& node) {
        if (!node.IsDefined()) {
            return 0;
        }
        const YAML::Mark mark = node.Mark();
        return mark.line >= 0 ? mark.line + 1 : 0;
    }

    void RequireMap(const YAML::Node& node, const std::string& field) const {
        if (!node.IsMap()) {
            Fail(node, field, "expected a map of fields");
        }
    }

    // The map's fields must all be among `allowed`.
    void CheckFields(const YAML::Node& node, const std::string& field,
                     std::initializer_list<const char*> allowed) const {
        RequireMap(node, field);
        std::set<std::string> seen;
        for (const auto& item : node) {
            const std::string name = item.first.IsScalar() ? item.first.Scalar() : "?";
            if (!seen.insert(name).second) {
                Fail(item.first, Path(field, name), "given twice");
            }
            if (std::find_if(allowed.begin(), allowed.end(),
                             [&](const char* known) { return name == known; }) == allowed.end()) {
                Fail(item.first, Path(field, name),
                     "unknown field; expected one of: " + Join(allowed));
            }
        }
    }

    // A field that must be there; `parent` gives the line when it is not.
    YAML::Node Required(const YAML::Node& parent, const char* name,
                        const std::string& field) const {
        const YAML::Node node = parent[name];
        if (!node.IsDefined() || node.IsNull()) {
            Fail(parent, Path(field, name), "missing");
        }
        return node;
    }

    static std::string Path(const std::string& parent, const std::string& name) {
        return parent.empty() ? name : parent + "." + name;
    }
    static std::string Index(const std::string& parent, size_t index) {
        return parent + "[" + std::to_string(index) + "]";
    }

    std::string Text(const YAML::Node& node, const std::string& field) const {
        if (!node.IsScalar()) {
            Fail(node, field, "expected a single value");
        }
        return node.Scalar();
    }

    int64_t Integer(const YAML::Node& node, const std::string& field, int64_t min,
                    int64_t max) const {
        const std::string text = Text(node, field);
        int64_t value = 0;
        if (!ParseIntegerText(text, &value) && !IsIntegerSyntax(text)) {
            Fail(node, field, "\"" + text + "\" is not an integer");
        }
        if (!ParseIntegerText(text, &value) || value < min || value > max) {
            Fail(node, field,
                 text + " is out of range (" + std::to_string(min) + ".." + std::to_string(max) +
                     ")");
        }
        return value;
    }

    uint32_t Unsigned32(const YAML::Node& node, const std::string& field) const {
        return static_cast<uint32_t>(Integer(node, field, 0, UINT32_MAX));
    }

    int32_t Signed32(const YAML::Node& node, const std::string& field) const {
        return static_cast<int32_t>(Integer(node, field, INT32_MIN, INT32_MAX));
    }

    double Number(const YAML::Node& node, const std::string& field) const {
        const std::string text = Text(node, field);
        char* end = nullptr;
        errno = 0;
        const double value = strtod(text.c_str(), &end);
        if (text.empty() || end != text.c_str() + text.size() || errno == ERANGE ||
            !std::isfinite(value)) {
            Fail(node, field, "\"" + text + "\" is not a number");
        }
        return value;
    }

    bool Boolean(const YAML::Node& node, const std::string& field) const {
        std::string text = Text(node, field);
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return static_cast<char>(tolower(c)); });
        if (text == "true" || text == "yes" || text == "1") {
            return true;
        }
        if (text == "false" || text == "no" || text == "0") {
            return false;
        }
        Fail(node, field, "\"" + node.Scalar() + "\" is not true or false");
    }

    // An integer, or a name that `lookup` knows.
    int64_t Named(const YAML::Node& node, const std::string& field,
                  bool (*lookup)(const std::string&, int64_t*), const char* what, int64_t min,
                  int64_t max, const std::vector<std::string>& known = {}) const {
        const std::string text = Text(node, field);
        int64_t value = 0;
        if (lookup(text, &value)) {
            return value;
        }
        if (!ParseIntegerText(text, &value)) {
            Fail(node, field,
                 "unknown " + std::string(what) + " \"" + text + "\"" + DidYouMean(text, known));
        }
        return Integer(node, field, min, max);
    }

    // Reads an optional field into `out` with `read`; leaves `out` as it is
    // when the field is absent.
    template <typename T, typename Value>
    void Optional(const YAML::Node& node, const std::string& field, const char* name, T* out,
                  Value (Reader::*read)(const YAML::Node&, const std::string&) const) const {
        if (node[name].IsDefined()) {
            *out = (this->*read)(node[name], Path(field, name));
        }
    }

    // A "no_..." switch: true when it is given and true, and then none of
    // `excluded` may be given.
    bool Without(const YAML::Node& node, const std::string& field, const char* name,
                 std::initializer_list<const char*> excluded, const char* reason) const {
        const YAML::Node flag = node[name];
        if (!flag.IsDefined() || !Boolean(flag, Path(field, name))) {
            return false;
        }
        for (const char* other : excluded) {
            if (node[other].IsDefined()) {
                Fail(flag, Path(field, name), reason);
            }
        }
        return true;
    }

    const YAML::Node& Sequence(const YAML::Node& node, const std::string& field) const {
        if (!node.IsSequence()) {
            Fail(node, field, "expected a list");
        }
        return node;
    }

    uint32_t Capability(const YAML::Node& node, const std::string& field) const {
        const std::string text = Text(node, field);
        uint32_t bit = 0;
        if (CapabilityByName(text, &bit)) {
            return bit;
        }
        int64_t value = 0;
        if (!ParseIntegerText(text, &value)) {
            Fail(node, field,
                 "unknown capability \"" + text + "\"" +
                     DidYouMean(text, AcceptedNames(NameTable::Capabilities)));
        }
        if (value < 0 || value > 99) {
            Fail(node, field,
                 "capability " + text +
                     " is outside 0..99 (the library treats it as a programming error)");
        }
        return static_cast<uint32_t>(value);
    }

    std::vector<uint32_t> Capabilities(const YAML::Node& node, const std::string& field) const {
        std::vector<uint32_t> bits;
        if (node.IsScalar()) {
            bits.push_back(Capability(node, field));
            return bits;
        }
        Sequence(node, field);
        for (size_t i = 0; i < node.size(); ++i) {
            bits.push_back(Capability(node[i], Index(field, i)));
        }
        return bits;
    }

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

    static bool StreamRoleLookup(const std::string& name, int64_t* value) {
        int32_t role = 0;
        if (!StreamRoleByName(name, &role)) {
            return false;
        }
        *value = role;
        return true;
    }

    static bool TuningTableLookup(const std::string& name, int64_t* value) {
        if (name == "feature1") {
            *value = 1;
        } else if (name == "feature2") {
            *value = 2;
        } else {
            return false;
        }
        return true;
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
    StreamSetup ReadStream(const YAML::Node& node, const std::string& field);
    std::vector<TagValue> ReadTags(const YAML::Node& node, const std::string& field);
    TagValue ReadTag(const YAML::Node& node, const std::string& field);
    Step ReadStep(const YAML::Node& node, const std::string& field, SessionState* state);
    RequestSetup ReadRequest(const YAML::Node& node, const std::string& field,
                             const SessionState& state, bool needFrame);
    ResultSetup ReadResult(const YAML::Node& node, const std::string& field, bool needFrame);

    std::string m_file;
    std::string m_baseDir;
};

Scenario Reader::Read(const YAML::Node& root) {
    CheckFields(root, "", {"device", "config", "config_text", "properties", "files", "sessions"});
    Scenario scenario;
    const YAML::Node device = Required(root, "device", "");
    if (device.IsScalar()) {
        // The device in a file of its own, shared by several scenarios.
        const std::string path = Resolve(device.Scalar());
        std::string text;
        std::string reason;
        if (!ReadWholeFile(path, &text, &reason)) {
            Fail(device, "device", "cannot read \"" + path + "\": " + reason);
        }
        YAML::Node deviceRoot;
        try {
            deviceRoot = YAML::Load(text);
        } catch (const YAML::Exception& error) {
            throw ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "",
                                "not valid YAML: " + error.msg);
        }
        Reader(path, DirectoryOf(path)).ReadDevice(deviceRoot, &scenario);
    } else {
        ReadDevice(device, &scenario);
    }
    ReadConfiguration(root, &scenario);
    Optional(root, "", "properties", &scenario.properties, &Reader::ReadProperties);
    Optional(root, "", "files", &scenario.files, &Reader::ReadFiles);
    const YAML::Node sessions = Required(root, "sessions", "");
    Sequence(sessions, "sessions");
    if (sessions.size() == 0) {
        Fail(sessions, "sessions", "at least one session is needed");
    }
    for (size_t i = 0; i < sessions.size(); ++i) {
        scenario.sessions.push_back(ReadSession(sessions[i], Index("sessions", i), scenario));
    }
    return scenario;
}

void Reader::ReadDevice(const YAML::Node& node, Scenario* scenario) {
    CheckFields(node, "device", {"cameras"});
    const YAML::Node cameras = Required(node, "cameras", "device");
    Sequence(cameras, "device.cameras");
    if (cameras.size() == 0) {
        Fail(cameras, "device.cameras", "at least one camera is needed");
    }
    std::set<uint32_t> frameworkIds;
    for (size_t i = 0; i < cameras.size(); ++i) {
        const std::string field = Index("device.cameras", i);
        CameraSetup camera = ReadCamera(cameras[i], field);
        if (!frameworkIds.insert(camera.frameworkId).second) {
            Fail(cameras[i]["framework_id"], Path(field, "framework_id"),
                 "framework id " + std::to_string(camera.frameworkId) + " is used twice");
        }
        scenario->cameras.push_back(camera);
    }
}

CameraSetup Reader::ReadCamera(const YAML::Node& node, const std::string& field) {
    CheckFields(node, field,
                {"framework_id", "logical_id", "sensor", "type", "sensor_mode_flags", "full_array",
                 "physical", "no_record"});
    CameraSetup camera;
    camera.frameworkId =
        Unsigned32(Required(node, "framework_id", field), Path(field, "framework_id"));
    if (node["no_record"].IsDefined() && Boolean(node["no_record"], Path(field, "no_record"))) {
        camera.hasRecord = false;
        return camera;
    }
    camera.logicalCamId = static_cast<uint32_t>(
        Integer(Required(node, "logical_id", field), Path(field, "logical_id"), 0, 15));
    Optional(node, field, "sensor", &camera.sensorName, &Reader::Text);
    Optional(node, field, "type", &camera.type, &Reader::Unsigned32);
    if (node["sensor_mode_flags"].IsDefined()) {
        const std::string name = Path(field, "sensor_mode_flags");
        const YAML::Node flags = Sequence(node["sensor_mode_flags"], name);
        if (flags.size() > kMaxSensorModes) {
            Fail(flags, name, "at most 32 sensor modes");
        }
        for (size_t i = 0; i < flags.size(); ++i) {
            camera.sensorModeFlags.push_back(
                static_cast<uint16_t>(Integer(flags[i], Index(name, i), 0, 0xFFFF)));
        }
    }
    if (node["full_array"].IsDefined()) {
        const std::string name = Path(field, "full_array");
        const YAML::Node size = Sequence(node["full_array"], name);
        if (size.size() != 2) {
            Fail(size, name, "expected [width, height]");
        }
        camera.fullArrayWidth = Unsigned32(size[0], Index(name, 0));
        camera.fullArrayHeight = Unsigned32(size[1], Index(name, 1));
    }
    if (!node["physical"].IsDefined()) {
        // A single camera: one entry that is the camera itself.
        PhysicalCameraSetup self;
        self.logicalCamId = static_cast<int32_t>(camera.logicalCamId);
        self.frameworkId = static_cast<int32_t>(camera.frameworkId);
        self.physicalCamId = camera.logicalCamId;
        self.isPrimary = 1;
        if (self.physicalCamId == kLogicalCamera) {
            Fail(node, field,
                 "a single camera with logical id 7 needs an explicit physical list with "
                 "another physical id (7 is the logical camera query type)");
        }
        camera.physicalCameras.push_back(self);
        return camera;
    }
    const std::string listName = Path(field, "physical");
    const YAML::Node list = Sequence(node["physical"], listName);
    if (list.size() == 0 || list.size() > kMaxPhysicalCameras) {
        Fail(list, listName, "1 to 8 physical cameras expected");
    }
    std::set<uint32_t> ids;
    for (size_t i = 0; i < list.size(); ++i) {
        const std::string entryName = Index(listName, i);
        const YAML::Node entry = list[i];
        CheckFields(entry, entryName, {"logical_id", "framework_id", "physical_id", "primary"});
        PhysicalCameraSetup physical;
        physical.physicalCamId = static_cast<uint32_t>(Integer(
            Required(entry, "physical_id", entryName), Path(entryName, "physical_id"), 0, 15));
        if (physical.physicalCamId == kLogicalCamera) {
            Fail(entry["physical_id"], Path(entryName, "physical_id"),
                 "7 is the logical camera query type; use another physical id");
        }
        if (!ids.insert(physical.physicalCamId).second) {
            Fail(entry["physical_id"], Path(entryName, "physical_id"),
                 "physical id " + std::to_string(physical.physicalCamId) + " is used twice");
        }
        physical.logicalCamId = entry["logical_id"].IsDefined()
                                    ? Signed32(entry["logical_id"], Path(entryName, "logical_id"))
                                    : static_cast<int32_t>(physical.physicalCamId);
        physical.frameworkId =
            entry["framework_id"].IsDefined()
                ? Signed32(entry["framework_id"], Path(entryName, "framework_id"))
                : static_cast<int32_t>(physical.physicalCamId);
        physical.isPrimary =
            entry["primary"].IsDefined() && Boolean(entry["primary"], Path(entryName, "primary"));
        camera.physicalCameras.push_back(physical);
    }
    return camera;
}

void Reader::ReadConfiguration(const YAML::Node& root, Scenario* scenario) {
    const YAML::Node file = root["config"];
    const YAML::Node inlineText = root["config_text"];
    if (file.IsDefined() && inlineText.IsDefined()) {
        Fail(inlineText, "config_text", "give either config or config_text, not both");
    }
    std::string configFile = m_file;
    int lineOffset = 0;
    if (file.IsDefined()) {
        scenario->configName = Text(file, "config");
        configFile = Resolve(scenario->configName);
        std::string reason;
        if (!ReadWholeFile(configFile, &scenario->configText, &reason)) {
            Fail(file, "config", "cannot read \"" + configFile + "\": " + reason);
        }
    } else if (inlineText.IsDefined()) {
        scenario->configName = "inline";
        scenario->configText = Text(inlineText, "config_text");
        // A block scalar starts on the line after its key.
        lineOffset = LineOf(inlineText);
    } else {
        scenario->configName = "none";
        return;
    }
    const HostPlatform::ConfigText parsed = HostPlatform::ReadConfigText(scenario->configText);
    if (const HostPlatform::ConfigProblem* problem = parsed.FirstMalformed()) {
        throw ScenarioError(configFile, problem->line + lineOffset,
                            file.IsDefined() ? "config" : "config_text",
                            HostPlatform::DescribeConfigProblem(*problem) +
                                ": the configuration store refuses the whole file");
    }
}

NamedTexts Reader::ReadProperties(const YAML::Node& node, const std::string& field) const {
    RequireMap(node, field);
    NamedTexts properties;
    for (const auto& item : node) {
        const std::string name = Text(item.first, field);
        const std::string path = Path(field, name);
        const std::string value = item.second.IsNull() ? "" : Text(item.second, path);
        if (value.size() > PROPERTY_VALUE_MAX - 1) {
            Fail(item.second, path,
                 "a property value holds at most " + std::to_string(PROPERTY_VALUE_MAX - 1) +
                     " characters");
        }
        properties.emplace_back(name, value);
    }
    return properties;
}

NamedTexts Reader::ReadFiles(const YAML::Node& node, const std::string& field) const {
    RequireMap(node, field);
    NamedTexts files;
    for (const auto& item : node) {
        const std::string path = Text(item.first, field);
        const std::string name = Path(field, path);
        if (path.empty() || path.front() != '/' || path.back() == '/') {
            Fail(item.first, name, "a device file path is absolute and names a file");
        }
        std::istringstream parts(path.substr(1));
        std::string part;
        while (std::getline(parts, part, '/')) {
            if (part.empty() || part == "." || part == "..") {
                Fail(item.first, name, "a device file path has no '.', '..' or empty parts");
            }
        }
        if (path == kSiblingPath) {
            Fail(item.first, name, "the sibling camera layer is provided by the simulator");
        }
        files.emplace_back(path, item.second.IsNull() ? "" : Text(item.second, name));
    }
    return files;
}

SessionSetup Reader::ReadSession(const YAML::Node& node, const std::string& field,
                                 const Scenario& scenario) {
    CheckFields(node, field,
                {"name", "camera", "package", "activity", "operation_mode", "params",
                 "no_session_params", "streams", "properties", "files", "steps"});
    SessionSetup session;
    session.line = LineOf(node);
    session.name = node["name"].IsDefined() ? Text(node["name"], Path(field, "name")) : field;
    session.camera = Unsigned32(Required(node, "camera", field), Path(field, "camera"));
    if (scenario.Camera(session.camera) == nullptr) {
        Fail(node["camera"], Path(field, "camera"),
             "camera " + std::to_string(session.camera) + " is not in device.cameras");
    }
    if (node["package"].IsDefined()) {
        session.hasPackage = true;
        session.package = Text(node["package"], Path(field, "package"));
    }
    if (node["activity"].IsDefined()) {
        session.hasActivity = true;
        session.activity = Text(node["activity"], Path(field, "activity"));
    }
    Optional(node, field, "operation_mode", &session.operationMode, &Reader::Unsigned32);
    if (node["no_session_params"].IsDefined()) {
        session.hasSessionParams =
            !Boolean(node["no_session_params"], Path(field, "no_session_params"));
    }
    if (node["params"].IsDefined()) {
        if (!session.hasSessionParams) {
            Fail(node["params"], Path(field, "params"),
                 "no_session_params leaves no room for params");
        }
        session.params = ReadTags(node["params"], Path(field, "params"));
        for (const TagValue& tag : session.params) {
            if (tag.vendor && ((tag.tag == Lumora::kTagPackageName && session.hasPackage) ||
                               (tag.tag == Lumora::kTagActivityName && session.hasActivity))) {
                throw ScenarioError(m_file, tag.line, Path(field, "params"),
                                    "vendor tag " + std::to_string(tag.tag) +
                                        " is already given by package/activity");
            }
        }
    }
    Optional(node, field, "properties", &session.properties, &Reader::ReadProperties);
    Optional(node, field, "files", &session.files, &Reader::ReadFiles);

    SessionState state;
    for (const CameraSetup& camera : scenario.cameras) {
        for (const PhysicalCameraSetup& physical : camera.physicalCameras) {
            state.cameraIds.insert(physical.physicalCamId);
        }
    }
    const std::string streamsName = Path(field, "streams");
    const YAML::Node streams = Sequence(Required(node, "streams", field), streamsName);
    if (streams.size() == 0) {
        Fail(streams, streamsName, "a configuration holds at least one stream");
    }
    for (size_t i = 0; i < streams.size(); ++i) {
        StreamSetup stream = ReadStream(streams[i], Index(streamsName, i));
        if (std::find(state.streamNames.begin(), state.streamNames.end(), stream.name) !=
            state.streamNames.end()) {
            Fail(streams[i]["name"], Path(Index(streamsName, i), "name"),
                 "stream name \"" + stream.name + "\" is used twice");
        }
        state.streamNames.push_back(stream.name);
        session.streams.push_back(stream);
    }
    if (node["steps"].IsDefined()) {
        const std::string stepsName = Path(field, "steps");
        const YAML::Node steps = Sequence(node["steps"], stepsName);
        for (size_t i = 0; i < steps.size(); ++i) {
            session.steps.push_back(ReadStep(steps[i], Index(stepsName, i), &state));
        }
    }
    return session;
}

StreamSetup Reader::ReadStream(const YAML::Node& node, const std::string& field) {
    CheckFields(
        node, field,
        {"name", "stream_type", "width", "height", "format", "usage", "data_space",
         "physical_camera_id", "stream_use_case", "ext_stream_mode", "dynamic_range_profile"});
    StreamSetup stream;
    stream.name = Text(Required(node, "name", field), Path(field, "name"));
    if (stream.name.empty()) {
        Fail(node["name"], Path(field, "name"), "a stream name is not empty");
    }
    if (node["stream_type"].IsDefined()) {
        stream.streamType = static_cast<int>(Named(node["stream_type"], Path(field, "stream_type"),
                                                   StreamTypeByName, "stream type", 0, 2,
                                                   AcceptedNames(NameTable::StreamTypes)));
    }
    stream.width = Unsigned32(Required(node, "width", field), Path(field, "width"));
    stream.height = Unsigned32(Required(node, "height", field), Path(field, "height"));
    stream.format = static_cast<int>(Named(Required(node, "format", field), Path(field, "format"),
                                           PixelFormatByName, "pixel format", INT32_MIN, INT32_MAX,
                                           AcceptedNames(NameTable::PixelFormats)));
    if (node["usage"].IsDefined()) {
        // A number, a name, or a list of names and numbers that are OR'ed.
        const YAML::Node usage = node["usage"];
        const std::string name = Path(field, "usage");
        uint64_t bits = 0;
        if (usage.IsSequence()) {
            for (size_t i = 0; i < usage.size(); ++i) {
                bits |= static_cast<uint64_t>(Named(usage[i], Index(name, i), UsageBitByName,
                                                    "usage bit", 0, UINT32_MAX,
                                                    AcceptedNames(NameTable::UsageBits)));
            }
        } else {
            bits = static_cast<uint64_t>(Named(usage, name, UsageBitByName, "usage bit", 0,
                                               UINT32_MAX, AcceptedNames(NameTable::UsageBits)));
        }
        stream.usage = static_cast<uint32_t>(bits);
    }
    if (node["data_space"].IsDefined()) {
        stream.dataSpace = static_cast<int32_t>(
            Named(node["data_space"], Path(field, "data_space"), DataSpaceByName, "data space",
                  INT32_MIN, UINT32_MAX, AcceptedNames(NameTable::DataSpaces)));
    }
    if (node["physical_camera_id"].IsDefined()) {
        const YAML::Node id = node["physical_camera_id"];
        if (id.IsNull()) {
            stream.hasPhysicalId = false;
        } else {
            stream.physicalId = Text(id, Path(field, "physical_camera_id"));
        }
    }
    if (node["stream_use_case"].IsDefined()) {
        stream.useCase = Named(node["stream_use_case"], Path(field, "stream_use_case"),
                               StreamUseCaseByName, "stream use case", INT64_MIN, INT64_MAX,
                               AcceptedNames(NameTable::StreamUseCases));
    }
    Optional(node, field, "ext_stream_mode", &stream.extMode, &Reader::Unsigned32);
    if (node["dynamic_range_profile"].IsDefined()) {
        stream.dynamicRangeProfile =
            Named(node["dynamic_range_profile"], Path(field, "dynamic_range_profile"),
                  DynamicRangeProfileByName, "dynamic range profile", INT64_MIN, INT64_MAX,
                  AcceptedNames(NameTable::DynamicRangeProfiles));
    }
    return stream;
}

std::vector<TagValue> Reader::ReadTags(const YAML::Node& node, const std::string& field) {
    Sequence(node, field);
    std::vector<TagValue> tags;
    for (size_t i = 0; i < node.size(); ++i) {
        TagValue tag = ReadTag(node[i], Index(field, i));
        for (const TagValue& earlier : tags) {
            if (earlier.vendor == tag.vendor && earlier.tag == tag.tag) {
                Fail(node[i], Index(field, i),
                     "the tag is already given on line " + std::to_string(earlier.line));
            }
        }
        tags.push_back(tag);
    }
    return tags;
}

TagValue Reader::ReadTag(const YAML::Node& node, const std::string& field) {
    CheckFields(node, field, {"tag", "vendor", "string", "bytes", "int32", "int64", "float"});
    TagValue tag;
    tag.line = LineOf(node);
    std::string tagName;
    if (node["vendor"].IsDefined() == node["tag"].IsDefined()) {
        Fail(node, field, "give either vendor (a vendor tag index) or tag (a standard tag)");
    }
    ElementType expected = ElementType::Unknown;
    if (node["vendor"].IsDefined()) {
        tag.vendor = true;
        tag.tag = Unsigned32(node["vendor"], Path(field, "vendor"));
        expected = VendorTagType(tag.tag);
        tagName = "vendor tag " + std::to_string(tag.tag);
    } else {
        const YAML::Node name = node["tag"];
        const std::string text = Text(name, Path(field, "tag"));
        int64_t number = 0;
        if (!StandardTagByName(text, &tag.tag)) {
            if (!ParseIntegerText(text, &number) || number < 0 || number > UINT32_MAX) {
                Fail(name, Path(field, "tag"),
                     "unknown standard tag \"" + text + "\"" +
                         DidYouMean(text, AcceptedNames(NameTable::StandardTags)));
            }
            tag.tag = static_cast<uint32_t>(number);
        }
        expected = StandardTagType(tag.tag);
        if (expected == ElementType::Unknown) {
            Fail(name, Path(field, "tag"), "the metadata store does not know tag " + text);
        }
        tagName = StandardTagName(tag.tag);
    }

    int valueKeys = 0;
    for (const char* key : {"string", "bytes", "int32", "int64", "float"}) {
        valueKeys += node[key].IsDefined() ? 1 : 0;
    }
    if (valueKeys != 1) {
        Fail(node, field, "give exactly one value: string, bytes, int32, int64 or float");
    }
    ElementType given = ElementType::Byte;
    std::string valueField;
    if (node["string"].IsDefined()) {
        valueField = Path(field, "string");
        const std::string text = Text(node["string"], valueField);
        tag.bytes.assign(text.begin(), text.end());
    } else if (node["bytes"].IsDefined()) {
        valueField = Path(field, "bytes");
        const YAML::Node list = node["bytes"];
        if (list.IsScalar()) {
            tag.bytes.push_back(static_cast<uint8_t>(Integer(list, valueField, -128, 255)));
        } else {
            Sequence(list, valueField);
            for (size_t i = 0; i < list.size(); ++i) {
                tag.bytes.push_back(
                    static_cast<uint8_t>(Integer(list[i], Index(valueField, i), -128, 255)));
            }
        }
    } else if (node["int32"].IsDefined()) {
        given = ElementType::Int32;
        valueField = Path(field, "int32");
        const YAML::Node list = node["int32"];
        if (list.IsScalar()) {
            tag.int32s.push_back(
                static_cast<int32_t>(Integer(list, valueField, INT32_MIN, UINT32_MAX)));
        } else {
            Sequence(list, valueField);
            for (size_t i = 0; i < list.size(); ++i) {
                tag.int32s.push_back(static_cast<int32_t>(
                    Integer(list[i], Index(valueField, i), INT32_MIN, UINT32_MAX)));
            }
        }
    } else if (node["int64"].IsDefined()) {
        given = ElementType::Int64;
        valueField = Path(field, "int64");
        const YAML::Node list = node["int64"];
        if (list.IsScalar()) {
            tag.int64s.push_back(Integer(list, valueField, INT64_MIN, INT64_MAX));
        } else {
            Sequence(list, valueField);
            for (size_t i = 0; i < list.size(); ++i) {
                tag.int64s.push_back(Integer(list[i], Index(valueField, i), INT64_MIN, INT64_MAX));
            }
        }
    } else {
        given = ElementType::Float;
        valueField = Path(field, "float");
        const YAML::Node list = node["float"];
        if (list.IsScalar()) {
            tag.floats.push_back(static_cast<float>(Number(list, valueField)));
        } else {
            Sequence(list, valueField);
            for (size_t i = 0; i < list.size(); ++i) {
                tag.floats.push_back(static_cast<float>(Number(list[i], Index(valueField, i))));
            }
        }
    }
    if (given != expected) {
        Fail(node, valueField,
             tagName + " holds " + ElementTypeName(expected) + " values, not " +
                 ElementTypeName(given));
    }
    tag.type = given;
    return tag;
}

RequestSetup Reader::ReadRequest(const YAML::Node& node, const std::string& field,
                                 const SessionState& state, bool needFrame) {
    if (needFrame) {
        CheckFields(node, field,
                    {"frame", "buffers", "sensor_modes", "zoom_ratio", "settings", "no_settings"});
    } else {
        CheckFields(node, field,
                    {"buffers", "sensor_modes", "zoom_ratio", "settings", "no_settings"});
    }
    RequestSetup request;
    if (needFrame) {
        request.frame = Unsigned32(Required(node, "frame", field), Path(field, "frame"));
    }
    if (node["buffers"].IsDefined()) {
        const std::string name = Path(field, "buffers");
        const YAML::Node buffers = Sequence(node["buffers"], name);
        for (size_t i = 0; i < buffers.size(); ++i) {
            const std::string stream = Text(buffers[i], Index(name, i));
            const auto it = std::find(state.streamNames.begin(), state.streamNames.end(), stream);
            if (it == state.streamNames.end()) {
                Fail(buffers[i], Index(name, i),
                     "no stream named \"" + stream + "\" in this session");
            }
            request.buffers.push_back(static_cast<size_t>(it - state.streamNames.begin()));
        }
    }
    if (Without(node, field, "no_settings", {"sensor_modes", "zoom_ratio", "settings"},
                "a request without settings carries no sensor_modes, zoom_ratio or settings")) {
        request.hasSettings = false;
        return request;
    }
    if (node["sensor_modes"].IsDefined()) {
        const std::string name = Path(field, "sensor_modes");
        const YAML::Node modes = Sequence(node["sensor_modes"], name);
        request.hasSensorModes = true;
        for (size_t i = 0; i < modes.size(); ++i) {
            request.sensorModes.push_back(Signed32(modes[i], Index(name, i)));
        }
    }
    if (node["zoom_ratio"].IsDefined()) {
        request.hasZoomRatio = true;
        request.zoomRatio =
            static_cast<float>(Number(node["zoom_ratio"], Path(field, "zoom_ratio")));
    }
    if (node["settings"].IsDefined()) {
        request.settings = ReadTags(node["settings"], Path(field, "settings"));
        for (const TagValue& tag : request.settings) {
            const bool modes = tag.vendor && tag.tag == Lumora::kTagSensorModeList;
            const bool zoom = !tag.vendor && tag.tag == ANDROID_CONTROL_ZOOM_RATIO;
            if ((modes && request.hasSensorModes) || (zoom && request.hasZoomRatio)) {
                throw ScenarioError(m_file, tag.line, Path(field, "settings"),
                                    modes ? "the sensor mode list is already given by sensor_modes"
                                          : "the zoom ratio is already given by zoom_ratio");
            }
        }
    }
    return request;
}

ResultSetup Reader::ReadResult(const YAML::Node& node, const std::string& field, bool needFrame) {
    if (needFrame) {
        CheckFields(node, field, {"frame", "aec", "mlft", "no_metadata"});
    } else {
        CheckFields(node, field, {"aec", "mlft", "no_metadata"});
    }
    ResultSetup result;
    if (needFrame) {
        result.frame = Unsigned32(Required(node, "frame", field), Path(field, "frame"));
    }
    if (Without(node, field, "no_metadata", {"aec", "mlft"},
                "a result without metadata carries no aec or mlft")) {
        result.hasMetadata = false;
        return result;
    }
    if (node["aec"].IsDefined()) {
        const std::string name = Path(field, "aec");
        const YAML::Node list = Sequence(node["aec"], name);
        if (list.size() > kMaxAecRecords) {
            Fail(list, name, "the exposure count list holds at most 8 records");
        }
        result.hasAec = true;
        for (size_t i = 0; i < list.size(); ++i) {
            const std::string entryName = Index(name, i);
            const YAML::Node entry = list[i];
            CheckFields(entry, entryName, {"camera", "exp_count", "values", "extra"});
            AecSetup aec = {};
            aec.cameraId =
                Signed32(Required(entry, "camera", entryName), Path(entryName, "camera"));
            aec.expCount =
                Signed32(Required(entry, "exp_count", entryName), Path(entryName, "exp_count"));
            if (entry["values"].IsDefined()) {
                const std::string valuesName = Path(entryName, "values");
                const YAML::Node values = Sequence(entry["values"], valuesName);
                if (values.size() != 2) {
                    Fail(values, valuesName, "expected two AEC values");
                }
                aec.aecValue1 = static_cast<float>(Number(values[0], Index(valuesName, 0)));
                aec.aecValue2 = static_cast<float>(Number(values[1], Index(valuesName, 1)));
            }
            Optional(entry, entryName, "extra", &aec.extra, &Reader::Unsigned32);
            result.aec.push_back(aec);
        }
    }
    if (node["mlft"].IsDefined()) {
        result.hasMlft = true;
        result.mlft = Unsigned32(node["mlft"], Path(field, "mlft"));
    }
    return result;
}

Step Reader::ReadStep(const YAML::Node& node, const std::string& field, SessionState* state) {
    Step step;
    step.line = LineOf(node);
    std::string kind;
    YAML::Node body;
    if (node.IsScalar()) {
        kind = node.Scalar();
    } else if (node.IsMap() && node.size() == 1) {
        kind = Text(node.begin()->first, field);
        body = node.begin()->second;
    } else {
        Fail(node, field,
             "a step is one of request, result, repeat or a query, as a map of one key");
    }
    const std::string bodyName = Path(field, kind);
    const bool hasBody = body.IsDefined() && !body.IsNull();
    auto requireBody = [&]() {
        if (!hasBody) {
            Fail(node, bodyName, "needs its fields");
        }
    };

    if (kind == "request") {
        requireBody();
        step.kind = StepKind::Request;
        step.request = ReadRequest(body, bodyName, *state, true);
        state->nextFrame = std::max(state->nextFrame, step.request.frame + 1);
    } else if (kind == "result") {
        requireBody();
        step.kind = StepKind::Result;
        step.result = ReadResult(body, bodyName, true);
    } else if (kind == "repeat") {
        requireBody();
        step.kind = StepKind::Repeat;
        CheckFields(body, bodyName, {"count", "first_frame", "request", "result"});
        step.count = static_cast<uint32_t>(
            Integer(Required(body, "count", bodyName), Path(bodyName, "count"), 1, kMaxRepeat));
        step.request = ReadRequest(Required(body, "request", bodyName), Path(bodyName, "request"),
                                   *state, false);
        step.request.frame = body["first_frame"].IsDefined()
                                 ? Unsigned32(body["first_frame"], Path(bodyName, "first_frame"))
                                 : state->nextFrame;
        if (uint64_t{step.request.frame} + step.count - 1 > UINT32_MAX) {
            Fail(body, bodyName, "the frame numbers would pass 4294967295");
        }
        if (body["result"].IsDefined()) {
            step.repeatResult = true;
            step.result = ReadResult(body["result"], Path(bodyName, "result"), false);
        }
        state->nextFrame = std::max(state->nextFrame, step.request.frame + step.count);
    } else if (kind == "session_caps") {
        requireBody();
        step.kind = StepKind::SessionCaps;
        CheckFields(body, bodyName, {"camera", "caps"});
        step.camera = QueryCamera(body, bodyName, 255, *state);
        step.caps = Capabilities(Required(body, "caps", bodyName), Path(bodyName, "caps"));
    } else if (kind == "caps_mask") {
        step.kind = StepKind::CapsMask;
        if (hasBody) {
            CheckFields(body, bodyName, {"camera"});
            step.camera = QueryCamera(body, bodyName, 255, *state);
        }
    } else if (kind == "streams") {
        requireBody();
        step.kind = StepKind::Streams;
        CheckFields(body, bodyName, {"role", "frame"});
        step.role = static_cast<int32_t>(
            Named(Required(body, "role", bodyName), Path(bodyName, "role"), StreamRoleLookup,
                  "stream role", 0, 15, AcceptedNames(NameTable::StreamRoles)));
        if (body["frame"].IsDefined()) {
            step.hasFrame = true;
            step.frame = Unsigned32(body["frame"], Path(bodyName, "frame"));
        }
    } else if (kind == "sensor_mode") {
        requireBody();
        step.kind = StepKind::SensorMode;
        CheckFields(body, bodyName, {"camera", "caps", "request", "session"});
        step.camera = QueryCamera(body, bodyName, 255, *state);
        const int sources = (body["caps"].IsDefined() ? 1 : 0) +
                            (body["request"].IsDefined() ? 1 : 0) +
                            (body["session"].IsDefined() ? 1 : 0);
        if (sources != 1) {
            Fail(body, bodyName,
                 "give exactly one of caps (a list), request (a frame) or session: true");
        }
        if (body["caps"].IsDefined()) {
            step.capsSource = CapsSource::List;
            step.caps = Capabilities(body["caps"], Path(bodyName, "caps"));
        } else if (body["request"].IsDefined()) {
            step.capsSource = CapsSource::Request;
            step.hasFrame = true;
            step.frame = Unsigned32(body["request"], Path(bodyName, "request"));
            if (step.camera != kLogicalCamera && step.camera > 7) {
                Fail(body["camera"], Path(bodyName, "camera"),
                     "a request holds caps for physical ids 0..7 only");
            }
        } else {
            if (!Boolean(body["session"], Path(bodyName, "session"))) {
                Fail(body["session"], Path(bodyName, "session"),
                     "only session: true is meaningful");
            }
            step.capsSource = CapsSource::Session;
        }
    } else if (kind == "tuning_mode") {
        requireBody();
        step.kind = StepKind::TuningMode;
        CheckFields(body, bodyName, {"frame", "table"});
        step.hasFrame = true;
        step.frame = Unsigned32(Required(body, "frame", bodyName), Path(bodyName, "frame"));
        step.tuningType =
            static_cast<uint32_t>(Named(Required(body, "table", bodyName), Path(bodyName, "table"),
                                        TuningTableLookup, "tuning table", 0, UINT32_MAX));
    } else if (kind == "pipeline" || kind == "sat" || kind == "star_mode_ae") {
        if (hasBody) {
            Fail(body, bodyName, "takes no fields");
        }
        step.kind = kind == "pipeline" ? StepKind::Pipeline
                                       : (kind == "sat" ? StepKind::Sat : StepKind::StarModeAe);
    } else if (kind == "warm_start") {
        requireBody();
        step.kind = StepKind::WarmStart;
        CheckFields(body, bodyName, {"camera"});
        step.camera = Unsigned32(Required(body, "camera", bodyName), Path(bodyName, "camera"));
        CheckCameraId(body["camera"], Path(bodyName, "camera"), step.camera, *state);
    } else if (kind == "remap_zoom_ratio") {
        requireBody();
        step.kind = StepKind::RemapZoomRatio;
        CheckFields(body, bodyName, {"sensor", "skip"});
        step.sensor = Text(Required(body, "sensor", bodyName), Path(bodyName, "sensor"));
        Optional(body, bodyName, "skip", &step.skip, &Reader::Signed32);
    } else if (kind == "request_caps") {
        requireBody();
        step.kind = StepKind::RequestCaps;
        CheckFields(body, bodyName, {"frame", "camera", "caps"});
        step.hasFrame = true;
        step.frame = Unsigned32(Required(body, "frame", bodyName), Path(bodyName, "frame"));
        step.camera = QueryCamera(body, bodyName, 7, *state);
        Optional(body, bodyName, "caps", &step.caps, &Reader::Capabilities);
    } else {
        Fail(node, field,
             "unknown step \"" + kind +
                 "\"; expected request, result, repeat, session_caps, caps_mask, streams, "
                 "sensor_mode, tuning_mode, pipeline, sat, warm_start, star_mode_ae, "
                 "remap_zoom_ratio or request_caps");
    }
    return step;
}

// Calls `use` with the list that holds a tag's values.
template <typename Use>
auto WithValues(const TagValue& value, Use use) {
    switch (value.type) {
        case ElementType::Int32:
            return use(value.int32s);
        case ElementType::Int64:
            return use(value.int64s);
        case ElementType::Float:
            return use(value.floats);
        default:
            return use(value.bytes);
    }
}

}  // namespace

size_t TagValue::Count() const {
    return WithValues(*this, [](const auto& values) { return values.size(); });
}

const void* TagValue::Data() const {
    return WithValues(*this, [](const auto& values) -> const void* { return values.data(); });
}

const CameraSetup* Scenario::Camera(uint32_t frameworkId) const {
    for (const CameraSetup& camera : cameras) {
        if (camera.frameworkId == frameworkId) {
            return &camera;
        }
    }
    return nullptr;
}

ScenarioError::ScenarioError(const std::string& file, int line, const std::string& field,
                             const std::string& reason)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " +
                         (field.empty() ? std::string() : field + ": ") + reason),
      m_file(file),
      m_line(line),
      m_field(field),
      m_reason(reason) {}

Scenario ReadScenarioText(const std::string& text, const std::string& path) {
    const YAML::Node root = LoadYaml(text, path);
    if (!root.IsMap()) {
        throw ScenarioError(path, 1, "", "a scenario is a map with device and sessions");
    }
    Reader reader(path, DirectoryOf(path));
    Scenario scenario;
    try {
        scenario = reader.Read(root);
    } catch (const YAML::Exception& error) {
        throw ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "", error.msg);
    }
    scenario.path = path;
    scenario.name = BaseName(path);
    return scenario;
}

Scenario ReadScenarioFile(const std::string& path) {
    std::string text;
    std::string reason;
    if (!ReadWholeFile(path, &text, &reason)) {
        throw ScenarioError(path, 0, "", reason);
    }
    return ReadScenarioText(text, path);
}

Scenario ReadDeviceOrScenarioFile(const std::string& path) {
    std::string text;
    if (!ReadWholeFile(path, &text)) {
        throw ScenarioError(path, 0, "", "cannot read the file");
    }
    const YAML::Node root = LoadYaml(text, path);
    if (!root.IsMap() || !root["cameras"].IsDefined()) {
        return ReadScenarioText(text, path);
    }
    Scenario scenario;
    try {
        Reader(path, DirectoryOf(path)).ReadDevice(root, &scenario);
    } catch (const YAML::Exception& error) {
        throw ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "", error.msg);
    }
    scenario.path = path;
    scenario.name = BaseName(path);
    scenario.configName = "none";
    return scenario;
}

}  // namespace UilayerSim
