// The scenario reader's entry points, number parsing and YAML loading, and the
// top level of a scenario: where the device comes from, the configuration, the
// properties and device files.
#include "core/ScenarioReader.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>
#include <strings.h>

#include <HostConfigText.h>

#include "core/ScenarioSections.h"

namespace UilayerSim {

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

bool IsIntegerSyntax(const std::string& text) {
    bool negative = false;
    uint64_t magnitude = 0;
    return HostPlatform::ParseIntegerMagnitude(text, &negative, &magnitude) !=
           HostPlatform::NumberStatus::NotANumber;
}

ScenarioError YamlError(const std::string& path, const YAML::Exception& error,
                        const std::string& prefix) {
    return ScenarioError(path, error.mark.line >= 0 ? error.mark.line + 1 : 0, "",
                         prefix + error.msg);
}

bool NamesNonFinite(const std::string& text) {
    size_t start = text.find_first_not_of("+-");
    start += start < text.size() && text[start] == '.' ? 1 : 0;
    return strncasecmp(text.c_str() + std::min(start, text.size()), "nan", 3) == 0 ||
           strncasecmp(text.c_str() + std::min(start, text.size()), "inf", 3) == 0;
}

namespace {

constexpr const char* kUnclosedQuote = "a quoted text that is not closed, opened";

// The closing quote of the quoted scalar opening at `pos`, npos when there is
// none: the parser may take an unclosed one to the end of the file.
size_t ClosingQuote(const std::string& text, size_t pos) {
    const char quote = text[pos];
    for (size_t i = pos + 1; i < text.size(); ++i) {
        if (quote == '"' && text[i] == '\\') {
            ++i;
        } else if (text[i] == quote) {
            if (quote == '"' || i + 1 == text.size() || text[i + 1] != '\'') {
                return i;
            }
            ++i;  // '' stands for one quote
        }
    }
    return std::string::npos;
}

// The mistake at byte `pos` of `text`, named by its line and column.
ScenarioError ErrorAt(const std::string& path, const std::string& text, size_t pos,
                      const std::string& what) {
    // With no line break before `pos`, npos + 1 is the start of the text.
    const size_t lineStart = pos == 0 ? 0 : text.rfind('\n', pos - 1) + 1;
    return ScenarioError(path,
                         static_cast<int>(std::count(text.begin(), text.begin() + pos, '\n')) + 1,
                         "", what + " at column " + std::to_string(pos - lineStart + 1));
}

// A quote that opens a scalar (after a blank line start, ':', ',', '[', '{',
// '-' or '?') and never closes, for text the parser refuses; npos when none.
size_t UnclosedQuote(const std::string& text) {
    char before = '\n';  // the last character that is not a blank
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '#' && (i == 0 || isspace(static_cast<unsigned char>(text[i - 1])) != 0)) {
            i = std::min(text.find('\n', i), text.size());
            before = '\n';
        } else if ((c == '"' || c == '\'') && strchr("\n:,[{-?", before) != nullptr) {
            const size_t close = ClosingQuote(text, i);
            if (close == std::string::npos) {
                return i;
            }
            i = close;
            before = c;
        } else if (c != ' ' && c != '\t') {
            before = c;
        }
    }
    return std::string::npos;
}

// Every scalar of `node` closes its quotes and holds no NUL (written as an
// escape). A list or map reached again through an alias (`seen`, by where it
// starts) is not walked again: an alias may even point into itself.
void CheckScalars(const YAML::Node& node, const std::string& text, const std::string& path,
                  std::set<int>* seen) {
    const int mark = node.Mark().pos;
    const size_t pos = static_cast<size_t>(std::max(mark, 0));
    if (node.IsScalar() && pos < text.size() && (text[pos] == '"' || text[pos] == '\'') &&
        ClosingQuote(text, pos) == std::string::npos) {
        throw ErrorAt(path, text, pos, kUnclosedQuote);
    }
    if (node.IsScalar() && node.Scalar().find('\0') != std::string::npos) {
        throw ErrorAt(path, text, pos, "a NUL in the value");
    }
    if (node.IsScalar() || !seen->insert(mark).second) {
        return;
    }
    for (auto it = node.begin(); it != node.end(); ++it) {
        if (node.IsMap()) {
            CheckScalars(it->first, text, path, seen);
        }
        CheckScalars(node.IsMap() ? it->second : *it, text, path, seen);
    }
}

}  // namespace

YAML::Node LoadYaml(const std::string& text, const std::string& path) {
    const size_t nul = text.find('\0');
    if (nul != std::string::npos) {
        throw ErrorAt(path, text, nul, "a NUL byte");
    }
    YAML::Node root;
    try {
        root = YAML::Load(text);
    } catch (const YAML::Exception& error) {
        const size_t quote = UnclosedQuote(text);
        throw quote != std::string::npos ? ErrorAt(path, text, quote, kUnclosedQuote)
                                         : YamlError(path, error, "not valid YAML: ");
    }
    std::set<int> seen;
    CheckScalars(root, text, path, &seen);
    return root;
}

namespace {

constexpr const char* kSiblingPath = "/odm/lib64/hw/camera.lumora.v2.so";

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
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

// The scenario `read` fills with a reader of the file at `path`, named after it.
template <typename Read>
Scenario ReadWith(const std::string& path, Read read) {
    SectionReader reader(path, DirectoryOf(path));
    Scenario scenario;
    try {
        read(reader, &scenario);
    } catch (const YAML::Exception& error) {
        throw YamlError(path, error);
    }
    scenario.warnings = reader.Warnings();
    scenario.path = path;
    scenario.name = std::filesystem::path(path).filename().string();
    return scenario;
}

}  // namespace

Scenario SectionReader::Read(const YAML::Node& root, bool needSessions) {
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
        SectionReader(path, DirectoryOf(path)).ReadDevice(LoadYaml(text, path), &scenario);
    } else {
        ReadDevice(device, &scenario);
    }
    Collect([&] { ReadConfiguration(root, &scenario); });
    Collect([&] {
        Optional(root, "", "properties", &scenario.properties, &SectionReader::ReadProperties);
    });
    Collect([&] { Optional(root, "", "files", &scenario.files, &SectionReader::ReadFiles); });
    if (needSessions || root["sessions"].IsDefined()) {
        Collect([&] {
            const YAML::Node sessions = Required(root, "sessions", "");
            Sequence(sessions, "sessions");
            if (sessions.size() == 0) {
                Fail(sessions, "sessions", "at least one session is needed");
            }
            for (size_t i = 0; i < sessions.size(); ++i) {
                Collect([&] {
                    scenario.sessions.push_back(
                        ReadSession(sessions[i], Index("sessions", i), scenario));
                });
            }
        });
    }
    ThrowMistakes();
    return scenario;
}

void SectionReader::ReadConfiguration(const YAML::Node& root, Scenario* scenario) {
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

NamedTexts SectionReader::ReadProperties(const YAML::Node& node, const std::string& field) const {
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

NamedTexts SectionReader::ReadFiles(const YAML::Node& node, const std::string& field) const {
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

size_t TagValue::Count() const {
    return WithValues(*this, [](const auto& values) { return values.size(); });
}

const void* TagValue::Data() const {
    return WithValues(*this, [](const auto& values) -> const void* { return values.data(); });
}

const CameraSetup* Scenario::Camera(uint32_t frameworkId) const {
    const auto found = std::find_if(cameras.begin(), cameras.end(), [&](const CameraSetup& camera) {
        return camera.frameworkId == frameworkId;
    });
    return found != cameras.end() ? &*found : nullptr;
}

ScenarioError::ScenarioError(const std::string& file, int line, const std::string& field,
                             const std::string& reason)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " +
                         (field.empty() ? std::string() : field + ": ") + reason) {}

Scenario ReadScenarioText(const std::string& text, const std::string& path, bool needSessions) {
    const YAML::Node root = LoadYaml(text, path);
    if (!root.IsMap()) {
        throw ScenarioError(path, 1, "", "a scenario is a map with device and sessions");
    }
    return ReadWith(path, [&](SectionReader& reader, Scenario* scenario) {
        *scenario = reader.Read(root, needSessions);
    });
}

TagValue ReadTagText(const std::string& text, const std::string& origin) {
    TagValue tag;
    ReadWith(origin, [&](SectionReader& reader, Scenario*) {
        tag = reader.ReadTag(LoadYaml(text, origin), "param");
    });
    return tag;
}

bool ReadWholeFile(const std::string& path, std::string* text, std::string* reason) {
    if (path != "-") {
        return HostPlatform::ReadWholeFile(path, text, reason);
    }
    text->clear();
    char buffer[65536];
    size_t got = 0;
    while ((got = fread(buffer, 1, sizeof(buffer), stdin)) > 0) {
        text->append(buffer, got);
    }
    if (ferror(stdin) != 0 && reason != nullptr) {
        *reason = "cannot read standard input";
    }
    return ferror(stdin) == 0;
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
        return ReadScenarioText(text, path, false);
    }
    return ReadWith(path, [&](SectionReader& reader, Scenario* scenario) {
        reader.ReadDevice(root, scenario);
        scenario->configName = "none";
    });
}

}  // namespace UilayerSim
