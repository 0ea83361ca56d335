// Reads a session of a scenario: its client, session parameters, streams and
// the metadata tags they carry.
#include "core/ScenarioSections.h"

#include <system/camera_metadata.h>

#include <sstream>

#include "CapabilityReference.h"
#include "common/VendorTags.h"
#include "staticsupportcaps/StaticSupportCapabilities.h"

namespace UilayerSim {

namespace {

// The camera modes the library's rules compare the client's with.
std::vector<std::string> RuleCameraModes() {
    std::vector<std::string> modes;
    for (size_t i = 0; i < Lumora::CapabilityRuleCount(); ++i) {
        for (const Lumora::_CapabilityInput& input :
             Lumora::ParseInputs(Lumora::CapabilityRules()[i])) {
            std::stringstream list(input.value);
            std::string mode;
            while (input.kind == Lumora::kInputCameraMode &&
                   std::getline(list >> std::ws, mode, ',')) {
                if (std::find(modes.begin(), modes.end(), mode) == modes.end()) {
                    modes.push_back(mode);
                }
            }
        }
    }
    return modes;
}

}  // namespace

std::string SectionReader::ClientName(const YAML::Node& node, const std::string& field) const {
    const std::string name = Text(node, field);
    const size_t keeps = Lumora::StaticSupportCapabilities::kClientNameSize - 1;
    if (name.size() > keeps) {
        Fail(node, field,
             std::to_string(name.size()) + " characters; the library keeps at most " +
                 std::to_string(keeps) + " and ignores a longer name");
    }
    return name;
}

SessionSetup SectionReader::ReadSession(const YAML::Node& node, const std::string& field,
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
    session.hasPackage =
        Optional(node, field, "package", &session.package, &SectionReader::ClientName);
    session.hasActivity =
        Optional(node, field, "activity", &session.activity, &SectionReader::ClientName);
    if (node["operation_mode"].IsDefined()) {
        session.operationMode = static_cast<uint32_t>(
            Named(node["operation_mode"], Path(field, "operation_mode"), NameTable::OperationModes,
                  "operation mode", 0, UINT32_MAX));
    }
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
    Optional(node, field, "properties", &session.properties, &SectionReader::ReadProperties);
    Optional(node, field, "files", &session.files, &SectionReader::ReadFiles);

    SessionState state;
    for (const CameraSetup& camera : scenario.cameras) {
        state.frameworkIds.insert(static_cast<int64_t>(camera.frameworkId));
        for (const PhysicalCameraSetup& physical : camera.physicalCameras) {
            state.cameraIds.insert(physical.physicalCamId);
            state.frameworkIds.insert(physical.frameworkId);
        }
    }
    const std::string streamsName = Path(field, "streams");
    const YAML::Node streams = Sequence(Required(node, "streams", field), streamsName);
    if (streams.size() == 0) {
        Fail(streams, streamsName, "a configuration holds at least one stream");
    }
    for (size_t i = 0; i < streams.size(); ++i) {
        const YAML::Node name = streams[i]["name"];
        const bool read = Collect([&] {
            StreamSetup stream = ReadStream(streams[i], Index(streamsName, i), state);
            if (std::find(state.streamNames.begin(), state.streamNames.end(), stream.name) !=
                state.streamNames.end()) {
                Fail(name, Path(Index(streamsName, i), "name"),
                     "stream name \"" + stream.name + "\" is used twice");
            }
            state.streamNames.push_back(stream.name);
            session.streams.push_back(stream);
        });
        // The requests still find a stream with a mistake by its name.
        if (!read && name.IsScalar()) {
            state.streamNames.push_back(name.Scalar());
        }
    }
    if (node["steps"].IsDefined()) {
        const std::string stepsName = Path(field, "steps");
        const YAML::Node steps = Sequence(node["steps"], stepsName);
        for (size_t i = 0; i < steps.size(); ++i) {
            Collect(
                [&] { session.steps.push_back(ReadStep(steps[i], Index(stepsName, i), &state)); });
        }
    }
    return session;
}

uint64_t SectionReader::Usage(const YAML::Node& node, const std::string& field) const {
    const std::string text = Text(node, field);
    bool negative = false;
    uint64_t magnitude = 0;
    const HostPlatform::NumberStatus status =
        HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude);
    if (status == HostPlatform::NumberStatus::NotANumber) {
        return static_cast<uint64_t>(
            Named(node, field, NameTable::UsageBits, "usage bit", 0, UINT32_MAX));
    }
    if (status != HostPlatform::NumberStatus::Ok || negative) {
        Fail(node, field, text + " is out of range (0.." + std::to_string(UINT64_MAX) + ")");
    }
    return magnitude;
}

StreamSetup SectionReader::ReadStream(const YAML::Node& node, const std::string& field,
                                      const SessionState& state) {
    CheckFields(node, field,
                {"name", "stream_type", "width", "height", "format", "usage", "data_space",
                 "physical_camera_id", "stream_use_case", "ext_stream_mode",
                 "dynamic_range_profile", "rotation"});
    StreamSetup stream;
    stream.line = LineOf(node);
    stream.name = Text(Required(node, "name", field), Path(field, "name"));
    if (stream.name.empty()) {
        Fail(node["name"], Path(field, "name"), "a stream name is not empty");
    }
    if (node["stream_type"].IsDefined()) {
        stream.streamType = static_cast<int>(Named(node["stream_type"], Path(field, "stream_type"),
                                                   NameTable::StreamTypes, "stream type", 0, 2));
    }
    stream.width = Unsigned32(Required(node, "width", field), Path(field, "width"));
    stream.height = Unsigned32(Required(node, "height", field), Path(field, "height"));
    stream.format =
        static_cast<int>(Named(Required(node, "format", field), Path(field, "format"),
                               NameTable::PixelFormats, "pixel format", INT32_MIN, INT32_MAX));
    if (node["usage"].IsDefined()) {
        // A number, a name, or a list of names and numbers that are OR'ed.
        const std::string name = Path(field, "usage");
        std::vector<uint64_t> values;
        ScalarOrList(node["usage"], name, &values,
                     [this](const YAML::Node& item, const std::string& itemName) {
                         return Usage(item, itemName);
                     });
        uint64_t bits = 0;
        for (const uint64_t value : values) {
            bits |= value;
        }
        stream.usage = static_cast<uint32_t>(bits);
        if (bits != stream.usage) {
            char dropped[40];
            snprintf(dropped, sizeof(dropped), "0x%llX",
                     static_cast<unsigned long long>(bits & ~uint64_t{UINT32_MAX}));
            Warn(node["usage"], name,
                 std::string("the stream record holds 32 bits of usage; ") + dropped +
                     " is dropped");
        }
    }
    if (node["data_space"].IsDefined()) {
        stream.dataSpace =
            static_cast<int32_t>(Named(node["data_space"], Path(field, "data_space"),
                                       NameTable::DataSpaces, "data space", INT32_MIN, UINT32_MAX));
    }
    if (node["physical_camera_id"].IsDefined()) {
        const YAML::Node id = node["physical_camera_id"];
        const std::string name = Path(field, "physical_camera_id");
        int64_t number = 0;
        if (id.IsNull()) {
            stream.hasPhysicalId = false;
        } else if (!(stream.physicalId = Text(id, name)).empty() &&
                   (!ParseIntegerText(stream.physicalId, &number) ||
                    state.frameworkIds.count(number) == 0)) {
            Fail(id, name,
                 "no camera of the device has framework id \"" + stream.physicalId + "\"");
        }
    }
    if (node["stream_use_case"].IsDefined()) {
        stream.useCase = Named(node["stream_use_case"], Path(field, "stream_use_case"),
                               NameTable::StreamUseCases, "stream use case", INT64_MIN, INT64_MAX);
    }
    Optional(node, field, "ext_stream_mode", &stream.extMode, &SectionReader::Unsigned32);
    if (node["dynamic_range_profile"].IsDefined()) {
        stream.dynamicRangeProfile =
            Named(node["dynamic_range_profile"], Path(field, "dynamic_range_profile"),
                  NameTable::DynamicRangeProfiles, "dynamic range profile", INT64_MIN, INT64_MAX);
    }
    // Checked, then left out as the library leaves it: the rotation is the
    // framework's 0..3.
    if (node["rotation"].IsDefined()) {
        Integer(node["rotation"], Path(field, "rotation"), 0, 3);
    }
    return stream;
}

std::vector<TagValue> SectionReader::ReadTags(const YAML::Node& node, const std::string& field) {
    Sequence(node, field);
    std::vector<TagValue> tags;
    for (size_t i = 0; i < node.size(); ++i) {
        Collect([&] {
            TagValue tag = ReadTag(node[i], Index(field, i));
            for (const TagValue& earlier : tags) {
                if (earlier.vendor == tag.vendor && earlier.tag == tag.tag) {
                    Fail(node[i], Index(field, i),
                         "the tag is already given on line " + std::to_string(earlier.line));
                }
            }
            tags.push_back(tag);
        });
    }
    return tags;
}

TagValue SectionReader::ReadTag(const YAML::Node& node, const std::string& field) {
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
        tag.field = Path(field, "vendor");
        tag.tag = Unsigned32(node["vendor"], tag.field);
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
    // The value's kind from its key; each value or list item in that kind's range.
    ElementType given = ElementType::Byte;
    std::string valueField;
    auto integers = [this](int64_t min, int64_t max) {
        return [this, min, max](const YAML::Node& item, const std::string& name) {
            return Integer(item, name, min, max);
        };
    };
    if (node["string"].IsDefined()) {
        valueField = Path(field, "string");
        const std::string text = Text(node["string"], valueField);
        tag.bytes.assign(text.begin(), text.end());
    } else if (node["bytes"].IsDefined()) {
        valueField = Path(field, "bytes");
        ScalarOrList(node["bytes"], valueField, &tag.bytes, integers(-128, 255));
    } else if (node["int32"].IsDefined()) {
        given = ElementType::Int32;
        valueField = Path(field, "int32");
        ScalarOrList(node["int32"], valueField, &tag.int32s, integers(INT32_MIN, UINT32_MAX));
    } else if (node["int64"].IsDefined()) {
        given = ElementType::Int64;
        valueField = Path(field, "int64");
        ScalarOrList(node["int64"], valueField, &tag.int64s, integers(INT64_MIN, INT64_MAX));
    } else {
        given = ElementType::Float;
        valueField = Path(field, "float");
        ScalarOrList(
            node["float"], valueField, &tag.floats,
            [this](const YAML::Node& item, const std::string& name) { return Number(item, name); });
    }
    if (given != expected) {
        Fail(node, valueField,
             tagName + " holds " + ElementTypeName(expected) + " values, not " +
                 ElementTypeName(given));
    }
    tag.type = given;
    if (!tag.vendor && tag.tag == ANDROID_CONTROL_AE_TARGET_FPS_RANGE && tag.Count() != 2) {
        Fail(node, valueField,
             "an fps range holds two values, min and max, not " + std::to_string(tag.Count()));
    }
    // Camera modes are open ended (other modules read them too); one near a
    // mode the library's rules name, but not it, is likely a typo.
    if (tag.vendor && tag.tag == Lumora::kTagCameraMode) {
        static const std::vector<std::string> kModes = RuleCameraModes();
        const std::string mode(tag.bytes.begin(), tag.bytes.end());
        const std::string hint = DidYouMean(mode, kModes);
        if (!hint.empty()) {
            Warn(node, valueField,
                 "no rule of the library names camera mode \"" + mode + "\"" + hint);
        }
    }
    return tag;
}

}  // namespace UilayerSim
