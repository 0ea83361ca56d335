// Reads the device of a scenario: its cameras and their physical cameras.
#include "core/ScenarioSections.h"

namespace UilayerSim {

namespace {

constexpr size_t kMaxPhysicalCameras = 8;
constexpr size_t kMaxSensorModes = 32;

}  // namespace

void SectionReader::ReadDevice(const YAML::Node& node, Scenario* scenario) {
    CheckFields(node, "device", {"cameras"});
    const YAML::Node cameras = Required(node, "cameras", "device");
    Sequence(cameras, "device.cameras");
    if (cameras.size() == 0) {
        Fail(cameras, "device.cameras", "at least one camera is needed");
    }
    std::set<uint32_t> frameworkIds;
    for (size_t i = 0; i < cameras.size(); ++i) {
        Collect([&] {
            const std::string field = Index("device.cameras", i);
            CameraSetup camera = ReadCamera(cameras[i], field);
            if (!frameworkIds.insert(camera.frameworkId).second) {
                Fail(cameras[i]["framework_id"], Path(field, "framework_id"),
                     "framework id " + std::to_string(camera.frameworkId) + " is used twice");
            }
            scenario->cameras.push_back(camera);
        });
    }
    // The sessions name the device's cameras: their mistakes would follow from these.
    ThrowMistakes();
}

CameraSetup SectionReader::ReadCamera(const YAML::Node& node, const std::string& field) {
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
    Optional(node, field, "sensor", &camera.sensorName, &SectionReader::Text);
    Optional(node, field, "type", &camera.type, &SectionReader::Unsigned32);
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
        if (camera.logicalCamId == kLogicalCamera) {
            Fail(node, field,
                 "a single camera with logical id 7 needs an explicit physical list with "
                 "another physical id (7 is the logical camera query type)");
        }
        camera.physicalCameras.push_back({static_cast<int32_t>(camera.logicalCamId),
                                          static_cast<int32_t>(camera.frameworkId),
                                          camera.logicalCamId, 1});
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
        physical.logicalCamId = static_cast<int32_t>(physical.physicalCamId);
        physical.frameworkId = physical.logicalCamId;
        Optional(entry, entryName, "logical_id", &physical.logicalCamId, &SectionReader::Signed32);
        Optional(entry, entryName, "framework_id", &physical.frameworkId, &SectionReader::Signed32);
        Optional(entry, entryName, "primary", &physical.isPrimary, &SectionReader::Boolean);
        camera.physicalCameras.push_back(physical);
    }
    return camera;
}

}  // namespace UilayerSim
