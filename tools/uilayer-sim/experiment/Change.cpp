// Applies changes to a copy of a scenario and names them as a user makes them.
#include "experiment/Change.h"

#include <HostConfigText.h>

#include <algorithm>
#include <cctype>
#include <sstream>

#include "common/VendorTags.h"

namespace UilayerSim {

namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

const HostPlatform::ConfigKey* FindKey(const HostPlatform::ConfigText& text,
                                       const std::string& group, const std::string& key) {
    const HostPlatform::ConfigGroup* found = text.Find(group);
    return found != nullptr ? found->Find(key) : nullptr;
}

std::string Quoted(const std::string& value) {
    const bool plain = !value.empty() && value.find(',') == std::string::npos &&
                       !isspace(static_cast<unsigned char>(value.front())) &&
                       !isspace(static_cast<unsigned char>(value.back()));
    return plain ? value : "\"" + value + "\"";
}

std::string Joined(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "" : ", ") + Quoted(value);
    }
    return text;
}

// The values the key has after the change.
std::vector<std::string> NewValues(const _Change& change, const HostPlatform::ConfigKey* key) {
    if (change.field < 0) {
        return change.values;
    }
    std::vector<std::string> values = key != nullptr ? key->values : change.base;
    if (values.size() <= static_cast<size_t>(change.field)) {
        values.resize(static_cast<size_t>(change.field) + 1, "0");
    }
    values[static_cast<size_t>(change.field)] = change.values.empty() ? "" : change.values.front();
    return values;
}

// The text read; experiments edit one configuration thousands of times.
const HostPlatform::ConfigText& Parsed(const std::string& text) {
    static std::string last;
    static HostPlatform::ConfigText parsed;
    if (last.empty() || last != text) {
        parsed = HostPlatform::ReadConfigText(text);
        last = text;
    }
    return parsed;
}

// The key's line replaced (or commented out), or the key added at the end in
// a group header of its own: a repeated header continues the group.
void EditConfig(const _Change& change, std::string* text) {
    const HostPlatform::ConfigText& parsed = Parsed(*text);
    const HostPlatform::ConfigKey* key = FindKey(parsed, change.group, change.key);
    const std::string line = change.key + " = " + Joined(NewValues(change, key));
    if (key == nullptr) {
        if (!change.remove) {
            *text += (text->empty() || text->back() == '\n' ? "" : "\n") + std::string("[") +
                     change.group + "]\n" + line + "\n";
        }
        return;
    }
    size_t begin = 0;
    for (int n = 1; n < key->line && begin != std::string::npos; ++n) {
        begin = text->find('\n', begin);
        begin = begin == std::string::npos ? begin : begin + 1;
    }
    if (begin == std::string::npos) {
        return;
    }
    const size_t end = std::min(text->find('\n', begin), text->size());
    text->replace(begin, end - begin,
                  change.remove ? "# " + text->substr(begin, end - begin) : line);
}

void Drop(Settings* list, const std::string& name) {
    list->erase(std::remove_if(list->begin(), list->end(),
                               [&](const auto& entry) { return entry.first == name; }),
                list->end());
}

void SetTag(const _Change& change, std::vector<TagValue>* tags) {
    tags->erase(std::remove_if(tags->begin(), tags->end(),
                               [&](const TagValue& tag) {
                                   return tag.vendor == change.tag.vendor &&
                                          tag.tag == change.tag.tag;
                               }),
                tags->end());
    if (!change.remove) {
        tags->push_back(change.tag);
    }
}

void ChangeSessionTag(const _Change& change, SessionSetup* session) {
    const bool package = change.tag.vendor && change.tag.tag == Lumora::kTagPackageName;
    const bool activity = change.tag.vendor && change.tag.tag == Lumora::kTagActivityName;
    if (package || activity) {
        (package ? session->hasPackage : session->hasActivity) = !change.remove;
        (package ? session->package : session->activity)
            .assign(change.tag.bytes.begin(), change.tag.bytes.end());
    } else if (change.tag.vendor || change.target != kOperationModeTarget) {
        SetTag(change, &session->params);
    } else {
        session->operationMode = static_cast<uint32_t>(change.number);
        return;
    }
    session->hasSessionParams = session->hasSessionParams || !change.remove;
}

bool Covers(const Step& step, uint32_t frame) {
    return (step.kind == StepKind::Request && step.request.frame == frame) ||
           (step.kind == StepKind::Repeat && frame >= step.request.frame &&
            frame - step.request.frame < step.count);
}

void ChangeRequest(const _Change& change, uint32_t frame, SessionSetup* session) {
    Step* result = nullptr;
    for (Step& step : session->steps) {
        if (Covers(step, frame)) {
            if (change.kind != ChangeKind::ResultTag) {
                step.request.hasSettings = true;
                SetTag(change, &step.request.settings);
                return;
            }
            break;
        }
        if (step.kind == StepKind::Result || (step.kind == StepKind::Repeat && step.repeatResult)) {
            result = &step;
        }
    }
    if (result == nullptr) {
        return;
    }
    if (change.tag.tag == Lumora::kTagExposureCountList) {
        result->result.hasAec = !change.remove && !result->result.aec.empty();
    } else {
        result->result.hasMlft = !change.remove;
        result->result.mlft = static_cast<uint32_t>(change.number);
    }
}

// A buffer of the stream added to (or removed from) the request of `frame`.
void ChangeBuffer(const _Change& change, size_t stream, uint32_t frame, SessionSetup* session) {
    for (Step& step : session->steps) {
        if (Covers(step, frame)) {
            std::vector<size_t>& buffers = step.request.buffers;
            buffers.erase(std::remove(buffers.begin(), buffers.end(), stream), buffers.end());
            if (!change.remove) {
                buffers.push_back(stream);
            }
        }
    }
}

void ChangeStream(const _Change& change, uint32_t frame, SessionSetup* session) {
    auto found =
        std::find_if(session->streams.begin(), session->streams.end(),
                     [&](const StreamSetup& stream) { return stream.name == change.target; });
    if (change.streamField.empty() && !change.remove) {
        session->streams.push_back(change.stream);
        session->streams.back().name = change.target;
        return;
    }
    if (found == session->streams.end()) {
        throw ChangeError("the session has no stream \"" + change.target + "\"");
    }
    const int64_t n = change.number;
    if (change.streamField == "buffer") {
        ChangeBuffer(change, static_cast<size_t>(found - session->streams.begin()), frame, session);
    } else if (change.streamField == "format") {
        found->format = static_cast<int>(n);
    } else if (change.streamField == "usage") {
        found->usage = static_cast<uint32_t>(n);
    } else if (change.streamField == "data_space") {
        found->dataSpace = static_cast<int32_t>(n);
    } else if (change.streamField == "use_case") {
        found->useCase = n;
    } else if (change.streamField == "ext_mode") {
        found->extMode = static_cast<uint32_t>(n);
    } else if (change.streamField == "size") {
        found->width = static_cast<uint32_t>(n >> 32);
        found->height = static_cast<uint32_t>(n & 0xFFFFFFFF);
    } else {
        const size_t index = static_cast<size_t>(found - session->streams.begin());
        session->streams.erase(found);
        for (Step& step : session->steps) {
            std::vector<size_t>& buffers = step.request.buffers;
            buffers.erase(std::remove(buffers.begin(), buffers.end(), index), buffers.end());
            for (size_t& buffer : buffers) {
                buffer -= buffer > index ? 1 : 0;
            }
        }
    }
}

std::string TagText(const TagValue& tag) {
    std::ostringstream out;
    const bool text =
        tag.type == ElementType::Byte && tag.bytes.size() > 1 &&
        std::all_of(tag.bytes.begin(), tag.bytes.end(), [](uint8_t c) { return isprint(c) != 0; });
    if (text) {
        return "\"" + std::string(tag.bytes.begin(), tag.bytes.end()) + "\"";
    }
    const char* separator = "";
    auto write = [&](const auto& values) {
        for (const auto& value : values) {
            out << separator << +value;
            separator = ", ";
        }
    };
    write(tag.bytes);
    write(tag.int32s);
    write(tag.int64s);
    write(tag.floats);
    return out.str();
}

std::string TagName(const TagValue& tag) {
    if (!tag.vendor) {
        return StandardTagName(tag.tag);
    }
    const Lumora::_VendorTagInfo* info = Lumora::FindVendorTag(tag.tag);
    return std::string(info != nullptr ? info->name : "vendor tag") + " (vendor " +
           std::to_string(tag.tag) + ")";
}

// "stream "preview" format = YCbCr_420_888", "stream "jpeg" usage +HW_VIDEO_ENCODER".
std::string StreamChangeText(const _Change& change) {
    const std::string name = "stream \"" + change.target + "\"";
    if (change.streamField == "format") {
        return name + " format = " + NameOfNumber(NameTable::PixelFormats, change.number);
    }
    if (change.streamField == "data_space") {
        return name + " data space = " + NameOfNumber(NameTable::DataSpaces, change.number);
    }
    if (change.streamField == "usage") {
        const uint32_t flipped = static_cast<uint32_t>(change.previous ^ change.number);
        const bool added = (static_cast<uint32_t>(change.number) & flipped) != 0;
        const std::string bit = NameOfNumber(NameTable::UsageBits, flipped);
        return name + " usage " + (added ? "+" : "-") +
               (bit == std::to_string(flipped) ? HexText(flipped) : bit);
    }
    if (change.streamField == "buffer") {
        return (change.remove ? "remove the buffer of " : "add a buffer of ") + name +
               " to the request";
    }
    if (change.streamField == "use_case") {
        return name + " use case = " + NameOfNumber(NameTable::StreamUseCases, change.number);
    }
    if (change.streamField == "ext_mode") {
        return name + " ext_stream_mode = " + std::to_string(change.number);
    }
    if (change.streamField == "size") {
        return name + " size = " + std::to_string(change.number >> 32) + "x" +
               std::to_string(change.number & 0xFFFFFFFF);
    }
    return (change.remove ? "remove " : "add ") + name;
}

}  // namespace

std::string HexText(uint64_t value) {
    std::ostringstream hex;
    hex << "0x" << std::uppercase << std::hex << value;
    return hex.str();
}

const char* ChangeKindName(ChangeKind kind) {
    static constexpr const char* kNames[] = {"config",        "property",    "session-tag",
                                             "session-param", "request-tag", "request-setting",
                                             "result-tag",    "stream",      "file"};
    return kNames[static_cast<size_t>(kind)];
}

_Change ConfigChange(const std::string& group, const std::string& key,
                     const std::vector<std::string>& values, bool remove) {
    _Change change;
    change.kind = ChangeKind::Config;
    change.target = group + "/" + key;
    change.group = group;
    change.key = key;
    change.values = values;
    change.remove = remove;
    return change;
}

std::vector<_Change> Merged(const std::vector<_Change>& changes, const Scenario& scenario) {
    const bool oneKey = changes.size() == 2 && changes[0].kind == ChangeKind::Config &&
                        changes[1].kind == ChangeKind::Config &&
                        changes[0].target == changes[1].target && changes[0].field >= 0 &&
                        changes[1].field >= 0;
    if (!oneKey) {
        return changes;
    }
    const HostPlatform::ConfigText text = HostPlatform::ReadConfigText(scenario.configText);
    const HostPlatform::ConfigKey* key = FindKey(text, changes[0].group, changes[0].key);
    HostPlatform::ConfigKey both;
    both.values = NewValues(changes[0], key);
    _Change merged = changes[1];
    merged.values = NewValues(changes[1], &both);
    merged.field = -1;
    return {merged};
}

std::vector<std::string> SplitConfigValues(const std::string& text) {
    const HostPlatform::ConfigText parsed = HostPlatform::ReadConfigText("[g]\nk = " + text);
    const HostPlatform::ConfigKey* key = FindKey(parsed, "g", "k");
    return key != nullptr ? key->values : std::vector<std::string>();
}

void ApplyChanges(const std::vector<_Change>& changes, size_t session, bool hasFrame,
                  uint32_t frame, Scenario* scenario) {
    SessionSetup* setup =
        session < scenario->sessions.size() ? &scenario->sessions[session] : nullptr;
    for (const _Change& change : changes) {
        switch (change.kind) {
            case ChangeKind::Config:
                EditConfig(change, &scenario->configText);
                break;
            case ChangeKind::Property:
            case ChangeKind::File: {
                const bool property = change.kind == ChangeKind::Property;
                Drop(property ? &scenario->properties : &scenario->files, change.target);
                for (SessionSetup& each : scenario->sessions) {
                    Drop(property ? &each.properties : &each.files, change.target);
                }
                if (!change.remove) {
                    (property ? scenario->properties : scenario->files)
                        .emplace_back(change.target, change.values.empty() ? "" : change.values[0]);
                }
                break;
            }
            case ChangeKind::SessionTag:
            case ChangeKind::SessionParam:
                if (setup != nullptr) {
                    ChangeSessionTag(change, setup);
                }
                break;
            case ChangeKind::RequestTag:
            case ChangeKind::RequestSetting:
            case ChangeKind::ResultTag:
                if (setup != nullptr && hasFrame) {
                    ChangeRequest(change, frame, setup);
                }
                break;
            case ChangeKind::Stream:
                if (setup != nullptr) {
                    ChangeStream(change, frame, setup);
                }
                break;
        }
    }
}

std::string ChangeValue(const _Change& change) {
    if (change.remove) {
        return change.kind == ChangeKind::Property ? "unset" : "removed";
    }
    switch (change.kind) {
        case ChangeKind::Config:
        case ChangeKind::Property:
        case ChangeKind::File:
            return Joined(change.values);
        case ChangeKind::Stream:
            return change.streamField.empty() ? "added"
                   : change.streamField == "format"
                       ? NameOfNumber(NameTable::PixelFormats, change.number)
                   : change.streamField == "data_space"
                       ? NameOfNumber(NameTable::DataSpaces, change.number)
                       : std::to_string(change.number);
        default:
            break;
    }
    if (change.kind == ChangeKind::SessionParam && change.target == kOperationModeTarget) {
        return HexText(static_cast<uint64_t>(change.number));
    }
    return TagText(change.tag);
}

std::string ChangeText(const _Change& change, const Scenario& scenario) {
    const std::string value = ChangeValue(change);
    switch (change.kind) {
        case ChangeKind::Config: {
            const HostPlatform::ConfigText parsed =
                HostPlatform::ReadConfigText(scenario.configText);
            const HostPlatform::ConfigKey* key = FindKey(parsed, change.group, change.key);
            const std::string where = scenario.configName +
                                      (key != nullptr ? ":" + std::to_string(key->line) : "") +
                                      ": ";
            if (change.remove) {
                return where + "remove " + change.target;
            }
            return where + (key != nullptr ? "" : "add ") + change.target + " = " +
                   Joined(NewValues(change, key));
        }
        case ChangeKind::Property:
            return "property " + change.target + (change.remove ? " unset" : " = " + value);
        case ChangeKind::File:
            return change.remove ? "remove file " + change.target
                                 : "file " + change.target + " = \"" + value + "\"";
        case ChangeKind::Stream:
            return StreamChangeText(change);
        case ChangeKind::SessionParam:
            if (change.target == kOperationModeTarget) {
                return "operation mode = " + value;
            }
            break;
        default:
            break;
    }
    static constexpr const char* kPlaces[] = {"",
                                              "",
                                              "session parameter ",
                                              "session parameter ",
                                              "request setting ",
                                              "request setting ",
                                              "last result entry ",
                                              "",
                                              ""};
    const std::string place = kPlaces[static_cast<size_t>(change.kind)];
    return change.remove ? "remove " + place + TagName(change.tag)
                         : place + TagName(change.tag) + " = " + value;
}

}  // namespace UilayerSim
