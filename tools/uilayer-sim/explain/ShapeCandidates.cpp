#include "explain/ShapeCandidates.h"

#include <algorithm>
#include <cctype>

#include "core/Names.h"
#include "explain/Candidates.h"
#include "lint/Lint.h"
#include "sweep/StreamCombinations.h"

namespace UilayerSim {

namespace {

// The ext_stream_mode values tried (the framework leaves it 0).
constexpr uint32_t kExtModes = 4;
// The usage bit that makes a stream the metadata stream.
constexpr uint32_t kMetadataUsage = 0x40;
// The smallest width or height taken for a frame size in the configuration.
constexpr unsigned long kMinDimension = 16;

using Texts = std::vector<std::string>;

// Each value of a name table once.
std::vector<int64_t> TableValues(NameTable table) {
    std::set<int64_t> values;
    for (const std::string& name : AcceptedNames(table)) {
        int64_t value = 0;
        if (NumberByName(table, name, &value)) {
            values.insert(value);
        }
    }
    return std::vector<int64_t>(values.begin(), values.end());
}

_Change RawStream(int format, uint32_t width, uint32_t height, const std::string& id) {
    _Change add;
    add.kind = ChangeKind::Stream;
    add.stream = MakeStream({StreamKind::Raw, SizeClass::Maximum}, CombinationTable::Raw,
                            SizesForArray(width, height), "");
    add.stream.format = format;
    add.stream.width = width;
    add.stream.height = height;
    add.stream.physicalId = id;
    add.target = "added " + NameOfNumber(NameTable::PixelFormats, format) + " " +
                 std::to_string(width) + "x" + std::to_string(height) +
                 (id.empty() ? "" : " of camera " + id);
    return add;
}

// The (width, height) pairs the configuration names: keys of two whole
// numbers that could be a frame size.
std::vector<int64_t> ConfiguredSizes(const HostPlatform::ConfigText& config) {
    std::set<int64_t> sizes;
    const auto dimension = [](const std::string& text) {
        const bool digits = !text.empty() && text.size() <= 5 &&
                            text.find_first_not_of("0123456789") == std::string::npos;
        return digits ? std::stoul(text) : 0ul;
    };
    for (const HostPlatform::ConfigGroup& group : config.groups) {
        for (const HostPlatform::ConfigKey& key : group.keys) {
            if (key.values.size() == 2 && dimension(key.values[0]) >= kMinDimension &&
                dimension(key.values[1]) >= kMinDimension) {
                sizes.insert(static_cast<int64_t>(dimension(key.values[0])) << 32 |
                             static_cast<int64_t>(dimension(key.values[1])));
            }
        }
    }
    return std::vector<int64_t>(sizes.begin(), sizes.end());
}

}  // namespace

std::vector<int64_t> NamedSizes(const std::string& text) {
    std::vector<int64_t> sizes;
    for (size_t x = text.find('x'); x != std::string::npos; x = text.find('x', x + 1)) {
        size_t begin = x;
        while (begin > 0 && isdigit(static_cast<unsigned char>(text[begin - 1])) != 0) {
            --begin;
        }
        size_t end = x + 1;
        while (end < text.size() && isdigit(static_cast<unsigned char>(text[end])) != 0) {
            ++end;
        }
        if (x - begin >= 2 && x - begin <= 5 && end - x - 1 >= 2 && end - x - 1 <= 5) {
            sizes.push_back(std::stoll(text.substr(begin, x - begin)) << 32 |
                            std::stoll(text.substr(x + 1, end - x - 1)));
        }
    }
    return sizes;
}

// The operation modes the configuration names, and the two plain ones.
void ShapeCandidates::OperationModeCandidates() {
    std::set<uint32_t> modes = m_operationModes;
    modes.insert({0, 1});
    for (const HostPlatform::ConfigGroup& group : m_config.groups) {
        for (const HostPlatform::ConfigKey& key : group.keys) {
            for (const std::string& text : key.values) {
                const uint64_t value = strtoull(text.c_str(), nullptr, 0);
                if (text.compare(0, 2, "0x") == 0 && value >= 0x8000 && value <= 0x80FF) {
                    modes.insert(static_cast<uint32_t>(value));
                }
            }
        }
    }
    for (uint32_t mode : modes) {
        if (mode == m_session.operationMode) {
            continue;
        }
        _Change change;
        change.kind = ChangeKind::SessionParam;
        change.target = kOperationModeTarget;
        change.number = mode;
        Add(change);
    }
}

void ShapeCandidates::StreamField(const StreamSetup& stream, const char* field, int64_t value,
                                  int64_t previous) {
    _Change change;
    change.previous = previous;
    change.kind = ChangeKind::Stream;
    change.target = stream.name;
    change.streamField = field;
    change.number = value;
    Add(change);
}

void ShapeCandidates::StreamCandidates() {
    static const std::vector<int64_t> formats = TableValues(NameTable::PixelFormats);
    static const std::vector<int64_t> spaces = TableValues(NameTable::DataSpaces);
    static const std::vector<int64_t> useCases = TableValues(NameTable::StreamUseCases);
    const CameraSetup* camera = m_scenario.Camera(m_session.camera);
    std::vector<int64_t> frames = {1280ll << 32 | 720, 1920ll << 32 | 1080, 3840ll << 32 | 2160,
                                   640ll << 32 | 480};
    if (camera != nullptr) {
        frames.push_back(int64_t{camera->fullArrayWidth} << 32 | camera->fullArrayHeight);
    }
    const std::vector<int64_t> configured = ConfiguredSizes(m_config);
    frames.insert(frames.end(), configured.begin(), configured.end());
    frames.insert(frames.end(), m_namedSizes.begin(), m_namedSizes.end());
    for (const StreamSetup& stream : m_session.streams) {
        if (m_hasFrame) {
            _Change buffer;  // added where absent, removed where present
            buffer.kind = ChangeKind::Stream;
            buffer.target = stream.name;
            buffer.streamField = "buffer";
            Add(buffer);
            buffer.remove = true;
            Add(buffer);
        }
        _Change remove;
        remove.kind = ChangeKind::Stream;
        remove.target = stream.name;
        remove.remove = true;
        Add(remove);
        if (!Relevant(remove)) {
            continue;
        }
        for (int64_t format : formats) {
            if (format != stream.format) {
                StreamField(stream, "format", format);
            }
        }
        for (int64_t space : spaces) {
            if (space != stream.dataSpace) {
                StreamField(stream, "data_space", space);
            }
        }
        for (uint32_t bit = 0; bit < 32; ++bit) {
            StreamField(stream, "usage", stream.usage ^ (1u << bit), stream.usage);
        }
        for (int64_t useCase : useCases) {
            if (useCase != stream.useCase) {
                StreamField(stream, "use_case", useCase);
            }
        }
        for (uint32_t mode = 0; mode < kExtModes; ++mode) {
            if (mode != stream.extMode) {
                StreamField(stream, "ext_mode", mode);
            }
        }
        for (int64_t size : frames) {
            if (size != (int64_t{stream.width} << 32 | stream.height)) {
                StreamField(stream, "size", size);
            }
        }
    }
    // A copy of a stream at a size the configuration names, after every
    // stream: roles that want a video stream before them, at that size.
    for (const StreamSetup& stream : m_session.streams) {
        for (int64_t size : configured) {
            _Change add;
            add.kind = ChangeKind::Stream;
            add.stream = stream;
            add.stream.width = static_cast<uint32_t>(size >> 32);
            add.stream.height = static_cast<uint32_t>(size & 0xFFFFFFFF);
            add.target = "added a copy of \"" + stream.name + "\" at " +
                         std::to_string(add.stream.width) + "x" + std::to_string(add.stream.height);
            Add(add);
        }
    }
    if (camera == nullptr) {
        return;
    }
    const SizeClasses sizes = SizesForArray(camera->fullArrayWidth, camera->fullArrayHeight);
    const StreamTarget targets[] = {{StreamKind::Priv, SizeClass::Preview},
                                    {StreamKind::Priv, SizeClass::Record},
                                    {StreamKind::Yuv, SizeClass::Maximum},
                                    {StreamKind::Jpeg, SizeClass::Maximum},
                                    {StreamKind::Raw, SizeClass::Maximum}};
    Texts physicalIds = {""};
    for (const PhysicalCameraSetup& physical : camera->physicalCameras) {
        physicalIds.push_back(std::to_string(physical.physicalCamId));
    }
    for (const StreamTarget& target : targets) {
        for (const std::string& id : physicalIds) {
            if (!id.empty() && target.kind != StreamKind::Priv) {
                continue;
            }
            _Change add;
            add.kind = ChangeKind::Stream;
            add.stream = MakeStream(target, CombinationTable::Full, sizes, "");
            add.stream.physicalId = id;
            add.target = "added " + StreamLabel(target, CombinationTable::Full) +
                         (id.empty() ? "" : " of camera " + id);
            Add(add);
        }
    }
    if (Relevant(RawStream(0, 0, 0, ""))) {
        for (const std::string& id : physicalIds) {
            RawCandidates(*camera, id);
        }
    }
}

// RAW streams of every RAW format at the full array, three quarters, half
// and a quarter of it: the sizes the RAW roles tell apart. A quarter-size
// RAW16 also comes with each use case and as a metadata stream, and the set's
// other arrays give the QCFA widths of a camera whose own array is smaller.
void ShapeCandidates::RawCandidates(const CameraSetup& logical, const std::string& id) {
    // A set without an array of its own takes its primary camera's.
    const CameraSetup* camera = &logical;
    for (const CameraSetup& each : m_scenario.cameras) {
        for (const PhysicalCameraSetup& physical : logical.physicalCameras) {
            const bool primary = id.empty() && logical.fullArrayWidth == 0 && physical.isPrimary;
            camera = primary && each.frameworkId == static_cast<uint32_t>(physical.frameworkId)
                         ? &each
                         : camera;
        }
        camera = !id.empty() && std::to_string(each.logicalCamId) == id ? &each : camera;
    }
    const uint32_t width = camera->fullArrayWidth;
    const uint32_t height = camera->fullArrayHeight;
    const auto add = [&](int64_t format, uint32_t w, uint32_t h, int64_t useCase, uint32_t usage) {
        _Change change = RawStream(static_cast<int>(format), w & ~1u, h & ~1u, id);
        change.stream.useCase = useCase;
        change.stream.usage |= usage;
        if (useCase != 0) {
            change.target += ", " + NameOfNumber(NameTable::StreamUseCases, useCase);
        }
        if (usage != 0) {
            change.target += ", usage +" + NameOfNumber(NameTable::UsageBits, usage);
        }
        Add(change);
    };
    int64_t raw16 = 0;
    for (int64_t format : TableValues(NameTable::PixelFormats)) {
        const std::string name = NameOfNumber(NameTable::PixelFormats, format);
        if (name.find("RAW") == std::string::npos) {
            continue;
        }
        raw16 = name == "RAW16" ? format : raw16;
        for (uint32_t quarters : {4u, 3u, 2u, 1u}) {
            add(format, width * quarters / 4, height * quarters / 4, 0, 0);
        }
    }
    for (int64_t useCase : TableValues(NameTable::StreamUseCases)) {
        add(raw16, width / 4, height / 4, useCase, 0);
    }
    add(raw16, width / 4, height / 4, 0, kMetadataUsage);
    for (const PhysicalCameraSetup& physical : logical.physicalCameras) {
        const CameraSetup* other = m_scenario.Camera(static_cast<uint32_t>(physical.frameworkId));
        if (other != nullptr && other != camera) {
            add(raw16, other->fullArrayWidth * 3 / 4, other->fullArrayHeight * 3 / 4, 0, 0);
        }
    }
}

void ShapeCandidates::FileCandidates() {
    for (const auto* files : {&m_scenario.files, &m_session.files}) {
        for (const auto& file : *files) {
            _Change change;
            change.kind = ChangeKind::File;
            change.target = file.first;
            change.remove = true;
            Add(change);
        }
    }
}

bool ChangeTouches(const _Change& change, const Lumora::_CapabilityInput& input) {
    switch (input.kind) {
        case Lumora::kInputConfig: {
            size_t count = 0;
            const KeyRule* rules = KeyRules(&count);
            const size_t index = static_cast<size_t>(input.configKey);
            return change.kind == ChangeKind::Config && index < count &&
                   KeyRuleMatches(rules[index], change.group, change.key);
        }
        case Lumora::kInputProperty:
            return change.kind == ChangeKind::Property && change.target == input.value;
        case Lumora::kInputSessionTag:
        case Lumora::kInputClient:
        case Lumora::kInputCameraMode:
            return change.kind == ChangeKind::SessionTag &&
                   (input.kind != Lumora::kInputSessionTag || change.target == input.value);
        case Lumora::kInputSessionParam:
            return change.kind == ChangeKind::SessionParam && change.target == input.value;
        case Lumora::kInputOperationMode:
            return change.kind == ChangeKind::SessionParam && change.target == kOperationModeTarget;
        case Lumora::kInputRequestTag:
            return change.kind == ChangeKind::RequestTag && change.target == input.value;
        case Lumora::kInputRequestSetting:
            return change.kind == ChangeKind::RequestSetting && change.target == input.value;
        case Lumora::kInputResultTag:
            return change.kind == ChangeKind::ResultTag && change.target == input.value;
        case Lumora::kInputStream: {
            // A field of the streams the rule names: changed by that field
            // (those without a candidate change by none), or by a stream
            // added or removed. A rule that names no field: by any change.
            static const std::pair<const char*, const char*> kFields[] = {
                {"format", "format"},
                {"usage", "usage"},
                {"data_space", "data_space"},
                {"stream_use_case", "use_case"},
                {"ext_stream_mode", "ext_mode"},
                {"width", "size"},
                {"height", "size"},
                {"stream_type", ""},
                {"physical_camera_id", ""},
                {"dynamic_range_profile", ""}};
            const std::string& field = change.streamField;
            if (change.kind != ChangeKind::Stream || field.empty() || field == "buffer") {
                return change.kind == ChangeKind::Stream;
            }
            for (const auto& each : kFields) {
                if (input.value == each.first) {
                    return field == each.second;
                }
            }
            return true;
        }
        case Lumora::kInputRequest:
            return change.kind == ChangeKind::Stream;
        case Lumora::kInputFile:
            return change.kind == ChangeKind::File;
        default:
            return false;
    }
}

}  // namespace UilayerSim
