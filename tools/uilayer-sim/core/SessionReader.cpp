// Reads a session of a scenario: its client, session parameters, streams and
// the metadata tags they carry.
#include "core/ScenarioSections.h"

#include "common/VendorTags.h"

namespace UilayerSim {

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
    session.hasPackage = Optional(node, field, "package", &session.package, &SectionReader::Text);
    session.hasActivity =
        Optional(node, field, "activity", &session.activity, &SectionReader::Text);
    Optional(node, field, "operation_mode", &session.operationMode, &SectionReader::Unsigned32);
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

StreamSetup SectionReader::ReadStream(const YAML::Node& node, const std::string& field) {
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
                                                   NameTable::StreamTypes, "stream type", 0, 2));
    }
    stream.width = Unsigned32(Required(node, "width", field), Path(field, "width"));
    stream.height = Unsigned32(Required(node, "height", field), Path(field, "height"));
    stream.format =
        static_cast<int>(Named(Required(node, "format", field), Path(field, "format"),
                               NameTable::PixelFormats, "pixel format", INT32_MIN, INT32_MAX));
    if (node["usage"].IsDefined()) {
        // A number, a name, or a list of names and numbers that are OR'ed.
        const YAML::Node usage = node["usage"];
        const std::string name = Path(field, "usage");
        uint64_t bits = 0;
        if (usage.IsSequence()) {
            for (size_t i = 0; i < usage.size(); ++i) {
                bits |= static_cast<uint64_t>(Named(usage[i], Index(name, i), NameTable::UsageBits,
                                                    "usage bit", 0, UINT32_MAX));
            }
        } else {
            bits = static_cast<uint64_t>(
                Named(usage, name, NameTable::UsageBits, "usage bit", 0, UINT32_MAX));
        }
        stream.usage = static_cast<uint32_t>(bits);
    }
    if (node["data_space"].IsDefined()) {
        stream.dataSpace =
            static_cast<int32_t>(Named(node["data_space"], Path(field, "data_space"),
                                       NameTable::DataSpaces, "data space", INT32_MIN, UINT32_MAX));
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
                               NameTable::StreamUseCases, "stream use case", INT64_MIN, INT64_MAX);
    }
    Optional(node, field, "ext_stream_mode", &stream.extMode, &SectionReader::Unsigned32);
    if (node["dynamic_range_profile"].IsDefined()) {
        stream.dynamicRangeProfile =
            Named(node["dynamic_range_profile"], Path(field, "dynamic_range_profile"),
                  NameTable::DynamicRangeProfiles, "dynamic range profile", INT64_MIN, INT64_MAX);
    }
    return stream;
}

std::vector<TagValue> SectionReader::ReadTags(const YAML::Node& node, const std::string& field) {
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
    return tag;
}

}  // namespace UilayerSim
