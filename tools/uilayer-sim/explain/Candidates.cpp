#include "explain/Candidates.h"

#include "explain/ShapeCandidates.h"

#include <HostConfigText.h>

#include <algorithm>
#include <set>
#include <iomanip>
#include <sstream>

#include "common/VendorTags.h"
#include "lint/Lint.h"
#include "sweep/StreamCombinations.h"

namespace UilayerSim {

namespace {

using HostPlatform::ConfigRead;
using HostPlatform::ConfigReadKind;
using Texts = std::vector<std::string>;

constexpr const char* kFpsRange = "ANDROID_CONTROL_AE_TARGET_FPS_RANGE";
// Frame rates a session may ask for, normal and high speed.
constexpr int32_t kFrameRates[] = {15, 24, 30, 60, 120, 240, 480, 960};
// Zoom ratios around the usual switch points of a multi-camera device.
constexpr float kZoomRatios[] = {0.6f, 1.0f, 2.0f, 4.0f, 10.0f};
// More distinct values than this from other rows or the configuration add
// little but time.
constexpr size_t kMaxSiblings = 8;
// The end of a camera mode's name ("video_mode").
const std::string kModeSuffix = "_mode";
// Rows of a group copied into a new row.
constexpr size_t kRowsCopied = 4;

void AddDistinct(Texts* list, const std::string& value, size_t limit = SIZE_MAX) {
    if (list->size() < limit && std::find(list->begin(), list->end(), value) == list->end()) {
        list->push_back(value);
    }
}

const TagValue* FindTag(const std::vector<TagValue>& tags, bool vendor, uint32_t tag) {
    for (const TagValue& each : tags) {
        if (each.vendor == vendor && each.tag == tag) {
            return &each;
        }
    }
    return nullptr;
}

// `base` holding the one value `number` of its element type.
TagValue WithNumber(TagValue base, double number) {
    base.bytes.clear();
    base.int32s.clear();
    base.int64s.clear();
    base.floats.clear();
    switch (base.type) {
        case ElementType::Byte:
            base.bytes = {static_cast<uint8_t>(number)};
            break;
        case ElementType::Int32:
            base.int32s = {static_cast<int32_t>(number)};
            break;
        case ElementType::Int64:
            base.int64s = {static_cast<int64_t>(number)};
            break;
        default:
            base.floats = {static_cast<float>(number)};
            break;
    }
    return base;
}

// "0x8009": how configuration rows write operation modes.
bool IsModeText(const std::string& text) {
    return text.compare(0, 3, "0x8") == 0 && text.size() == 6;
}

bool IsText(const TagValue* tag, uint32_t index) {
    if (tag != nullptr && tag->bytes.size() > 1) {
        return true;
    }
    return index == Lumora::kTagPackageName || index == Lumora::kTagCameraUnitPackage ||
           index == Lumora::kTagActivityName || index == Lumora::kTagCameraMode;
}

class CandidateBuilder {
public:
    CandidateBuilder(const Scenario& scenario, const _Question& question,
                     const std::vector<Lumora::_CapabilityInput>& focus)
        : m_scenario(scenario),
          m_question(question),
          m_focus(focus),
          m_session(scenario.sessions.at(question.session)),
          m_config(HostPlatform::ReadConfigText(scenario.configText)) {
        m_rules = KeyRules(&m_ruleCount);
        CollectPools();
        // The camera and operation modes the reference names for the rules.
        for (const Lumora::_CapabilityInput& input : focus) {
            if (input.kind != Lumora::kInputCameraMode &&
                input.kind != Lumora::kInputOperationMode) {
                continue;
            }
            for (const std::string& value : SplitConfigValues(input.value)) {
                if (input.kind == Lumora::kInputCameraMode) {
                    AddDistinct(&m_modes, value);
                } else if (value.compare(0, 2, "0x") == 0) {
                    m_operationModes.insert(
                        static_cast<uint32_t>(strtoul(value.c_str(), nullptr, 0)));
                }
            }
        }
    }

    std::vector<_Change> Build(const std::vector<ConfigRead>& reads) {
        std::set<uint32_t> tags;
        for (const ConfigRead& read : reads) {
            switch (read.kind) {
                case ConfigReadKind::Key:
                    KeyCandidates(read.group, read.key);
                    break;
                case ConfigReadKind::IndexedKeys:
                    NewRowCandidates(read.group, read.key);
                    break;
                case ConfigReadKind::Group:
                    AnyKeyCandidates(read.group);
                    break;
                case ConfigReadKind::Property:
                    PropertyCandidates(read.group, read.key);
                    break;
                case ConfigReadKind::Metadata:
                    if (read.key != "vendor") {
                        StandardTagCandidates(read.tag);
                    } else if (tags.insert(read.tag).second) {
                        VendorCandidates(read.tag);
                    }
                    break;
            }
        }
        // What the rules read that this run did not reach (a read behind
        // another condition): the properties and plain keys they name.
        for (const Lumora::_CapabilityInput& input : m_focus) {
            if (input.kind == Lumora::kInputProperty) {
                PropertyCandidates(input.value, "");
            } else if (input.kind == Lumora::kInputConfig) {
                const Lumora::_ConfigKey& read = Lumora::Key(input.configKey);
                UnreadKeyCandidates(read.group, read.key, read.form);
            }
        }
        ShapeCandidates shapes(
            m_scenario, m_session, m_config, m_operationModes,
            [this](const _Change& change) { return Relevant(change); },
            [this](const _Change& change) { Add(change); }, m_question.hasFrame, m_question.words);
        shapes.OperationModeCandidates();
        shapes.StreamCandidates();
        shapes.FileCandidates();
        return m_out;
    }

private:
    // Whether a change of this kind and target changes an input of the focus.
    bool Relevant(const _Change& change) const {
        return std::any_of(m_focus.begin(), m_focus.end(), [&](const Lumora::_CapabilityInput& in) {
            return ChangeTouches(change, in);
        });
    }

    // Whether a configuration value is one the session itself uses (or a
    // switch): pairs of changes are searched among these.
    bool SessionValue(const std::string& value) const {
        const bool number = std::find(m_ints.begin(), m_ints.begin() + m_sessionInts, value) !=
                            m_ints.begin() + m_sessionInts;
        return number || value == "true" || value == "false" ||
               std::find(m_strings.begin(), m_strings.end(), value) != m_strings.end();
    }

    void Add(_Change change) {
        for (const std::string& value :
             change.kind == ChangeKind::Config ? change.values : Texts()) {
            change.sessionValue = change.sessionValue || (change.field >= 0 && SessionValue(value));
        }
        change.sessionValue = change.sessionValue || change.kind != ChangeKind::Config;
        std::string key = std::string(ChangeKindName(change.kind)) + "|" + change.target + "|" +
                          std::to_string(change.remove) + "|" + std::to_string(change.field) + "|" +
                          change.streamField + "|" + ChangeValue(change);
        for (const std::string& value : change.base) {
            key += "|" + value;
        }
        if (m_seen.insert(key).second) {
            m_out.push_back(change);
        }
    }

    void CollectPools() {
        AddDistinct(&m_ints, HexText(m_question.configuredMode));
        AddDistinct(&m_ints, HexText(m_session.operationMode));
        AddDistinct(&m_ints, std::to_string(m_session.camera));
        uint32_t fpsTag = 0;
        StandardTagByName(kFpsRange, &fpsTag);
        if (const TagValue* fps = FindTag(m_session.params, false, fpsTag)) {
            for (int32_t value : fps->int32s) {
                AddDistinct(&m_ints, std::to_string(value));
                m_fps.push_back(value);
            }
        }
        if (const CameraSetup* camera = m_scenario.Camera(m_session.camera)) {
            // Masks of the logical camera, of each physical one and of all of them.
            AddDistinct(&m_ints, std::to_string(camera->logicalCamId));
            AddDistinct(&m_ints, HexText(1ull << (camera->logicalCamId & 31)));
            uint64_t all = 0;
            for (const PhysicalCameraSetup& physical : camera->physicalCameras) {
                AddDistinct(&m_ints, std::to_string(physical.physicalCamId));
                AddDistinct(&m_ints, HexText(1ull << (physical.physicalCamId & 31)));
                all |= 1ull << (physical.physicalCamId & 31);
            }
            AddDistinct(&m_ints, HexText(all));
        }
        m_sessionInts = m_ints.size();
        for (const char* plain : {"0", "1", "-1"}) {
            AddDistinct(&m_ints, plain);
        }
        const auto addText = [this](bool has, const std::string& text) {
            if (has && !text.empty()) {
                AddDistinct(&m_strings, text);
            }
        };
        addText(m_session.hasPackage, m_session.package);
        addText(m_session.hasActivity, m_session.activity);
        if (const TagValue* mode = FindTag(m_session.params, true, Lumora::kTagCameraMode)) {
            addText(true, std::string(mode->bytes.begin(), mode->bytes.end()));
        }
        for (const CameraSetup& camera : m_scenario.cameras) {
            addText(camera.hasSensorName, camera.sensorName);
        }
    }

    // The rule of the library's table a key of the file stands for; null for none.
    const KeyRule* RuleOf(const std::string& group, const std::string& key) const {
        for (size_t i = 0; i < m_ruleCount; ++i) {
            if (KeyRuleMatches(m_rules[i], group, key)) {
                return &m_rules[i];
            }
        }
        return nullptr;
    }

    // Value `field` of the other rows named like `key` ("Mode[1]" for "Mode[0]").
    Texts Siblings(const std::string& group, const std::string& key, size_t field) const {
        Texts values;
        const HostPlatform::ConfigGroup* found = m_config.Find(group);
        const std::string name = key.substr(0, key.rfind('['));
        for (size_t i = 0; found != nullptr && key.back() == ']' && i < found->keys.size(); ++i) {
            const HostPlatform::ConfigKey& row = found->keys[i];
            if (row.name != key && row.name.compare(0, name.size() + 1, name + "[") == 0 &&
                field < row.values.size()) {
                AddDistinct(&values, row.values[field], kMaxSiblings);
            }
        }
        return values;
    }

    // What a user would try in a value of type `letter` that holds `current`.
    Texts Values(char letter, const std::string& current, const Texts& siblings) const {
        Texts values;
        if (letter == 'b') {
            values = {"true", "false"};
        } else if (letter == 's') {
            values = m_strings;
        } else if (letter == 'f') {
            values = {"0", "1", "2", "10"};
        } else if (!siblings.empty() && std::all_of(siblings.begin(), siblings.end(), IsModeText)) {
            // A column of operation modes: the session's, as configured.
            values = {HexText(m_question.configuredMode), HexText(m_session.operationMode)};
        } else {
            values = m_ints;
            int64_t number = 0;
            std::istringstream in(current);
            if (!current.empty() && (in >> std::setbase(0) >> number)) {
                AddDistinct(&values, std::to_string(number + 1));
                AddDistinct(&values, std::to_string(number - 1));
            }
        }
        // Operation modes only where the rows hold them.
        if (!siblings.empty() && std::none_of(siblings.begin(), siblings.end(), IsModeText)) {
            values.erase(std::remove_if(values.begin(), values.end(), IsModeText), values.end());
        }
        for (const std::string& sibling : siblings) {
            AddDistinct(&values, sibling);
        }
        const bool isTrue = current == "1" || current == "true" || current == "TRUE";
        values.erase(std::remove_if(values.begin(), values.end(),
                                    [&](const std::string& value) {
                                        return value == current ||
                                               (letter == 'b' && (value == "true") == isTrue);
                                    }),
                     values.end());
        return values;
    }

    void FieldCandidates(const std::string& group, const std::string& key, const KeyRule& rule,
                         const Texts& current) {
        const bool repeats = rule.types.find('*') != std::string::npos;
        const size_t fields = current.size() + (repeats || current.empty() ? 1 : 0);
        for (size_t field = 0; field < fields && !rule.types.empty(); ++field) {
            const char letter = TypeAt(rule.types, field, std::max(fields, current.size()));
            const std::string value = field < current.size() ? current[field] : "";
            // A list of operation modes takes modes only.
            Texts siblings = Siblings(group, key, field);
            const bool modes = repeats && !current.empty() &&
                               std::all_of(current.begin(), current.end(), IsModeText);
            siblings = siblings.empty() && modes ? current : siblings;
            Texts values = Values(letter, value, siblings);
            // Nor does a key without one (a size, a mask) take operation modes.
            if (siblings.empty() && !current.empty() &&
                std::none_of(current.begin(), current.end(), IsModeText)) {
                values.erase(std::remove_if(values.begin(), values.end(), IsModeText),
                             values.end());
            }
            for (const std::string& each : values) {
                _Change change = ConfigChange(group, key, {each});
                change.field = static_cast<int>(field);
                Add(change);
            }
        }
    }

    void KeyCandidates(const std::string& group, const std::string& key) {
        const KeyRule* rule = RuleOf(group, key);
        if (rule == nullptr) {
            return;
        }
        const HostPlatform::ConfigGroup* found = m_config.Find(group);
        const HostPlatform::ConfigKey* present = found != nullptr ? found->Find(key) : nullptr;
        if (present != nullptr) {
            Add(ConfigChange(group, key, {}, true));
        }
        const Texts values = present != nullptr ? present->values : Texts();
        if (Relevant(ConfigChange(group, key, {}))) {
            FieldCandidates(group, key, *rule, values);
            return;
        }
        // Outside the focus: the switches alone.
        for (size_t field = 0; field < values.size() || (values.empty() && field == 0); ++field) {
            if (TypeAt(rule->types, field, values.size()) == 'b') {
                const std::string current = field < values.size() ? values[field] : "";
                for (const std::string& each : Values('b', current, {})) {
                    _Change change = ConfigChange(group, key, {each});
                    change.field = static_cast<int>(field);
                    Add(change);
                }
            }
        }
    }

    // A key the run did not read: a plain key, the rows of a table and a
    // new one, or the names of a group of names.
    void UnreadKeyCandidates(const std::string& group, const std::string& key, KeyForm form) {
        if (form == KeyForm::Single) {
            KeyCandidates(group, key);
        } else if (form == KeyForm::Rows) {
            const HostPlatform::ConfigGroup* found = m_config.Find(group);
            for (size_t i = 0; found != nullptr && i < found->keys.size(); ++i) {
                if (found->keys[i].name.compare(0, key.size() + 1, key + "[") == 0) {
                    KeyCandidates(group, found->keys[i].name);
                }
            }
            NewRowCandidates(group, key);
        } else if (form == KeyForm::NamedRows || form == KeyForm::NamedSingleRow) {
            AnyKeyCandidates(group);
        }
    }

    // A row after the last: a copy of an existing row (or a row of zeros)
    // with one value set as the session has it.
    void NewRowCandidates(const std::string& group, const std::string& name) {
        const HostPlatform::ConfigGroup* found = m_config.Find(group);
        std::vector<const HostPlatform::ConfigKey*> rows;
        for (size_t i = 0; found != nullptr && i < found->keys.size(); ++i) {
            if (found->keys[i].name.compare(0, name.size() + 1, name + "[") == 0) {
                rows.push_back(&found->keys[i]);
            }
        }
        const std::string key = name + "[" + std::to_string(rows.size()) + "]";
        const KeyRule* rule = RuleOf(group, key);
        if (rule == nullptr || name.empty() || !Relevant(ConfigChange(group, key, {}))) {
            return;
        }
        std::vector<Texts> bases;
        for (size_t i = 0; i < rows.size() && i < kRowsCopied; ++i) {
            bases.push_back(rows[i]->values);
            // A column of operation modes takes the session's.
            for (size_t field = 0; field < bases.back().size(); ++field) {
                const bool modes = std::all_of(rows.begin(), rows.end(), [&](const auto* row) {
                    return field < row->values.size() && IsModeText(row->values[field]);
                });
                bases.back()[field] =
                    modes ? HexText(m_question.configuredMode) : bases.back()[field];
            }
        }
        // A column of the device's camera ids that lacks the session's camera
        // gives each copy a second version with the session's camera there.
        const size_t copies = bases.size();
        const std::string camera = std::to_string(m_session.camera);
        for (size_t field = 0; copies > 0 && field < bases.front().size(); ++field) {
            bool cameras = true;
            bool other = false;  // a camera id besides 0 and 1 (a switch)
            for (const auto* row : rows) {
                const std::string value = field < row->values.size() ? row->values[field] : "";
                const CameraSetup* known =
                    value.empty() || value.find_first_not_of("0123456789") != std::string::npos ||
                            value.size() > 4
                        ? nullptr
                        : m_scenario.Camera(static_cast<uint32_t>(std::stoul(value)));
                cameras = cameras && known != nullptr && value != camera;
                other = other || (value != "0" && value != "1");
            }
            for (size_t i = 0; cameras && other && i < copies; ++i) {
                bases.push_back(bases[i]);
                bases.back()[field] = camera;
            }
        }
        if (bases.empty()) {
            bases.push_back(Texts(std::max<size_t>(rule->minValues, 1), "0"));
        }
        for (const Texts& base : bases) {
            for (size_t field = 0; field < base.size(); ++field) {
                const char letter = TypeAt(rule->types, field, base.size());
                for (const std::string& each :
                     Values(letter, base[field],
                            Siblings(group, rows.empty() ? key : rows[0]->name, field))) {
                    _Change change = ConfigChange(group, key, {each});
                    change.field = static_cast<int>(field);
                    change.base = base;
                    change.sessionValue = SessionValue(each);
                    Add(change);
                }
            }
        }
    }

    // Groups whose keys are names the library looks up (sensor or package names).
    void AnyKeyCandidates(const std::string& group) {
        for (size_t i = 0; i < m_ruleCount; ++i) {
            const KeyRule& rule = m_rules[i];
            const bool any = rule.form == KeyForm::AnyKey || rule.form == KeyForm::NamedSingleRow;
            if (group == rule.group && rule.form == KeyForm::Rows) {
                NewRowCandidates(group, rule.key);  // rows counted by the group's key count
            }
            if (group != rule.group || !any) {
                continue;
            }
            for (const std::string& name : m_strings) {
                const std::string key = rule.form == KeyForm::AnyKey ? name : name + "[0]";
                Add(ConfigChange(group, key, {"1"}));
            }
        }
    }

    void PropertyCandidates(const std::string& name, const std::string& fallback) {
        for (const std::string& value :
             {std::string("0"), std::string("1"), std::string("-1"), fallback}) {
            _Change change;
            change.kind = ChangeKind::Property;
            change.target = name;
            change.values = {value};
            Add(change);
        }
        _Change unset;
        unset.kind = ChangeKind::Property;
        unset.target = name;
        unset.remove = true;
        Add(unset);
    }

    void AddTag(ChangeKind kind, const TagValue& value, bool remove) {
        _Change change;
        change.kind = kind;
        change.target = value.vendor ? std::to_string(value.tag) : StandardTagName(value.tag);
        change.tag = value;
        change.remove = remove;
        Add(change);
    }

    // Values of a vendor tag: absent, and values of its element type.
    void VendorTagCandidates(ChangeKind kind, uint32_t index, const TagValue* current) {
        TagValue value;
        value.vendor = true;
        value.tag = index;
        value.type = VendorTagType(index);
        AddTag(kind, value, true);
        if (value.type == ElementType::Byte && IsText(current, index)) {
            // A camera mode takes camera modes: those the rules name and the
            // session's.
            Texts texts = index == Lumora::kTagCameraMode ? m_modes : m_strings;
            for (const std::string& text : index == Lumora::kTagCameraMode ? m_strings : Texts()) {
                if (std::find(m_modes.begin(), m_modes.end(), text) == m_modes.end() &&
                    text.size() > kModeSuffix.size() &&
                    text.compare(text.size() - kModeSuffix.size(), kModeSuffix.size(),
                                 kModeSuffix) == 0) {
                    texts.push_back(text);
                }
            }
            for (const std::string& text : texts) {
                value.bytes.assign(text.begin(), text.end());
                AddTag(kind, value, false);
            }
            return;
        }
        for (int32_t number : {0, 1, -1, 2, 3}) {
            if (value.type != ElementType::Byte || number == 0 || number == 1) {
                AddTag(kind, WithNumber(value, number), false);
            }
        }
    }

    void VendorCandidates(uint32_t index) {
        for (const Lumora::_VendorTagInfo& info : Lumora::kVendorTags) {
            if (info.index != index) {
                continue;
            }
            if ((info.use & Lumora::kTagInSessionParams) != 0) {
                VendorTagCandidates(ChangeKind::SessionTag, info.index,
                                    FindTag(m_session.params, true, info.index));
            }
            if (m_question.hasFrame && (info.use & Lumora::kTagInRequests) != 0) {
                VendorTagCandidates(ChangeKind::RequestTag, info.index, nullptr);
            }
            if (m_question.hasFrame && (info.use & Lumora::kTagInResults) != 0) {
                TagValue value;
                value.vendor = true;
                value.tag = info.index;
                AddTag(ChangeKind::ResultTag, value, true);
            }
            return;
        }
    }

    void StandardTagCandidates(uint32_t id) {
        TagValue value;
        value.tag = id;
        value.type = StandardTagType(id);
        uint32_t fpsTag = 0;
        StandardTagByName(kFpsRange, &fpsTag);
        if (id == fpsTag) {
            AddTag(ChangeKind::SessionParam, value, true);
            for (int32_t rate : kFrameRates) {
                value.int32s = {rate, rate};
                AddTag(ChangeKind::SessionParam, value, false);
                if (!m_fps.empty() && m_fps.front() < rate) {
                    value.int32s = {m_fps.front(), rate};
                    AddTag(ChangeKind::SessionParam, value, false);
                }
            }
            return;
        }
        if (!m_question.hasFrame) {
            return;
        }
        AddTag(ChangeKind::RequestSetting, value, true);
        if (value.type == ElementType::Float) {
            for (float ratio : kZoomRatios) {
                AddTag(ChangeKind::RequestSetting, WithNumber(value, ratio), false);
            }
        } else if (value.type != ElementType::Unknown) {
            for (int32_t number : {0, 1, 2}) {
                AddTag(ChangeKind::RequestSetting, WithNumber(value, number), false);
            }
        }
    }

    const Scenario& m_scenario;
    const _Question& m_question;
    const std::vector<Lumora::_CapabilityInput>& m_focus;
    const SessionSetup& m_session;
    const HostPlatform::ConfigText m_config;
    const KeyRule* m_rules = nullptr;
    size_t m_ruleCount = 0;
    Texts m_ints;  // the session's values first
    size_t m_sessionInts = 0;
    Texts m_strings;
    Texts m_modes;
    std::set<uint32_t> m_operationModes;
    std::vector<int32_t> m_fps;
    std::vector<_Change> m_out;
    std::set<std::string> m_seen;
};

}  // namespace

std::vector<_Change> CandidateChanges(const Scenario& scenario, const _Question& question,
                                      const std::vector<HostPlatform::ConfigRead>& reads,
                                      const std::vector<Lumora::_CapabilityInput>& focus) {
    return CandidateBuilder(scenario, question, focus).Build(reads);
}

}  // namespace UilayerSim
