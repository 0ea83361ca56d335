#include "lint/Lint.h"

#include <HostConfigText.h>
#include <HostConfigValues.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <strings.h>

#include "core/NumberText.h"
#include "core/Suggest.h"

namespace UilayerSim {

namespace {

// Longest key the library forms from a sensor name for the DCG/VS list and
// for the sensor mode table (63 characters and a terminator).
constexpr size_t kMaxFormedKey = 63;
// "Size[<name>]" must fit the library's 50-character key buffer.
constexpr size_t kMaxRawSizeSensorName = 45;
// Bits a reduced sensor caps mask can hold.
constexpr uint64_t kReducedMaskBits = 0x3FFFF;
constexpr uint64_t kMaskFallbackBit = 0x2;

using HostPlatform::ConfigGroup;
using HostPlatform::ConfigKey;
using HostPlatform::ConfigProblem;
using HostPlatform::ConfigText;
using HostPlatform::NumberStatus;

// Whether the configuration store's read of that type takes the text.
bool Converts(char type, const std::string& text) {
    uint32_t value32 = 0;
    int64_t value64 = 0;
    bool flag = false;
    float number = 0;
    switch (type) {
        case 'b':
            return HostPlatform::ParseBoolean(text, &flag);
        case 'i':
            // The store wraps 2147483648 to a negative value without a word.
            return ParseIntegerText(text, &value64) && value64 >= INT32_MIN && value64 <= INT32_MAX;
        case 'u':
            return HostPlatform::ParseUInt32(text, &value32) == NumberStatus::Ok;
        case 'l':
            return HostPlatform::ParseInt64(text, &value64) == NumberStatus::Ok;
        case 'f':
            // The store takes nan, inf and what overflows to inf.
            return HostPlatform::ParseFloat(text, &number) && std::isfinite(number);
        case 'x': {
            const size_t i = text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0 ? 2 : 0;
            return i < text.size() && std::all_of(text.begin() + i, text.end(), [](char c) {
                       return isxdigit(static_cast<unsigned char>(c)) != 0;
                   });
        }
        default:
            return true;
    }
}

// A value type as findings name it, and the stable identifier of a value that
// does not convert to it; the last row stands for any other type.
struct TypeText {
    char type;
    const char* name;
    const char* rule;
};
constexpr TypeText kTypeTexts[] = {
    {'b', "a boolean (true, false, 1 or 0)", "not-a-boolean"},
    {'i', "an integer", "not-an-integer"},
    {'u', "an unsigned integer", "not-an-integer"},
    {'l', "a 64-bit integer", "not-an-integer"},
    {'f', "a float", "not-a-float"},
    {'x', "a hexadecimal number", "not-hexadecimal"},
    {'\0', "text", "not-an-integer"},
};

const TypeText& TextOf(char type) {
    const TypeText* text = kTypeTexts;
    while (text->type != '\0' && text->type != type) {
        ++text;
    }
    return *text;
}

// The stable identifier of a line the store refuses, by ConfigProblemKind.
constexpr const char* kMalformedRules[] = {"unclosed-group", "text-outside-group", "missing-equals",
                                           "missing-key"};

std::string Values(size_t count) {
    return std::to_string(count) + (count == 1 ? " value" : " values");
}

std::string Quote(const std::string& text) {
    return "\"" + text + "\"";
}

// Splits "name[index]" with a decimal index as "%u" writes it.
bool SplitIndexed(const std::string& key, std::string* name, uint32_t* index) {
    if (key.size() < 3 || key.back() != ']') {
        return false;
    }
    const size_t open = key.rfind('[');
    if (open == std::string::npos || open == 0) {
        return false;
    }
    const std::string digits = key.substr(open + 1, key.size() - open - 2);
    if (digits.empty() || digits.size() > 9 || (digits.size() > 1 && digits[0] == '0') ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return false;
    }
    *name = key.substr(0, open);
    *index = static_cast<uint32_t>(strtoul(digits.c_str(), nullptr, 10));
    return true;
}

// A known name that `name` likely misspells: equal but for case, or within
// two edits (one for short names).
bool LikelyTypo(const std::string& name, const std::string& known) {
    if (name == known) {
        return false;
    }
    if (name.size() == known.size() && strcasecmp(name.c_str(), known.c_str()) == 0) {
        return true;
    }
    const size_t limit = std::min(name.size(), known.size()) < 5 ? 1 : 2;
    return EditDistance(name, known) <= limit;
}

std::string DidYouMeanKey(const std::string& known) {
    return "not read by the library; did you mean " + Quote(known) + "?";
}

// The finding for a key whose name before "[...]" misspells `rowName`; "" when
// it does not.
std::string RowNameTypo(const std::string& key, const std::string& rowName) {
    const std::string base = key.substr(0, key.find('['));
    return LikelyTypo(base, rowName) ? DidYouMeanKey(rowName + key.substr(base.size())) : "";
}

class Linter {
public:
    Linter(const std::string& file, const ConfigText& text) : m_file(file), m_text(text) {
        size_t count = 0;
        const KeyRule* rules = KeyRules(&count);
        m_rules.assign(rules, rules + count);
    }

    std::vector<LintFinding> Run();

private:
    void Add(const char* rule, int line, const std::string& group, const std::string& key,
             const std::string& reason) {
        m_findings.push_back(LintFinding{m_file, line, group, key, rule, reason});
    }

    std::vector<const KeyRule*> RulesOf(const std::string& group) const {
        std::vector<const KeyRule*> rules;
        for (const KeyRule& rule : m_rules) {
            if (group == rule.group) {
                rules.push_back(&rule);
            }
        }
        return rules;
    }

    // Value count and types of one key; `rowZero` is the row 0 of a row.
    void CheckValues(const ConfigGroup& group, const ConfigKey& key, const KeyRule& rule,
                     bool isRow, const ConfigKey* rowZero);
    void CheckSingleKeys(const ConfigGroup& group, const std::vector<const KeyRule*>& rules);
    void CheckRows(const ConfigGroup& group, const KeyRule& rule);
    void CheckNamedRows(const ConfigGroup& group, const KeyRule& rule);
    void CheckNamedByKey(const ConfigGroup& group, const KeyRule& rule);
    void CheckSensorModeKey(const ConfigGroup& group, const ConfigKey& key, const KeyRule& rule);

    std::string m_file;
    const ConfigText& m_text;
    std::vector<KeyRule> m_rules;
    std::vector<LintFinding> m_findings;
};

void Linter::CheckValues(const ConfigGroup& group, const ConfigKey& key, const KeyRule& rule,
                         bool isRow, const ConfigKey* rowZero) {
    const size_t count = key.values.size();
    const std::string n = Values(count);
    if (rule.sizedByRowZero && rowZero != nullptr && rowZero != &key) {
        if (count != rowZero->values.size()) {
            Add("row-count", key.line, group.name, key.name,
                n + ", row 0 has " + std::to_string(rowZero->values.size()) +
                    " (the library reads every row with the count of row 0)");
            return;
        }
    } else if (rule.maxValues != 0 && rule.minValues == rule.maxValues && count != rule.minValues) {
        Add("value-count", key.line, group.name, key.name,
            n + (isRow ? ", rows of " : ", ") + std::to_string(rule.minValues) + " expected");
        return;
    } else if (count < rule.minValues) {
        Add("value-count", key.line, group.name, key.name,
            n + ", at least " + std::to_string(rule.minValues) + " expected");
        return;
    } else if (rule.maxValues != 0 && count > rule.maxValues) {
        Add("value-count", key.line, group.name, key.name,
            n + ", at most " + std::to_string(rule.maxValues) + " are read");
        return;
    }
    for (size_t i = 0; i < count; ++i) {
        const char type = TypeAt(rule.types, i, count);
        if (!Converts(type, key.values[i])) {
            // An integer the store cannot hold in the type it reads, as
            // opposed to text that is no integer at all.
            float number = 0;
            const bool floatOutOfRange = type == 'f' && !NamesNonFinite(key.values[i]) &&
                                         HostPlatform::ParseFloat(key.values[i], &number);
            const bool outOfRange =
                ((type == 'i' || type == 'u' || type == 'l') && IsIntegerSyntax(key.values[i])) ||
                floatOutOfRange;
            Add(outOfRange ? "out-of-range" : TextOf(type).rule, key.line, group.name, key.name,
                "value " + std::to_string(i + 1) + " " + Quote(key.values[i]) +
                    (outOfRange ? std::string(" is out of range for ") +
                                      (floatOutOfRange ? "a float"
                                       : type == 'l'   ? "a 64-bit integer"
                                                       : "a 32-bit integer")
                                : std::string(" is not ") + TextOf(type).name));
            return;
        }
    }
}

void Linter::CheckSingleKeys(const ConfigGroup& group, const std::vector<const KeyRule*>& rules) {
    for (const ConfigKey& key : group.keys) {
        const KeyRule* match = nullptr;
        for (const KeyRule* rule : rules) {
            if (key.name == rule->key) {
                match = rule;
            }
        }
        if (match != nullptr) {
            CheckValues(group, key, *match, false, nullptr);
            continue;
        }
        for (const KeyRule* rule : rules) {
            if (LikelyTypo(key.name, rule->key) && group.Find(rule->key) == nullptr) {
                Add("unknown-key", key.line, group.name, key.name, DidYouMeanKey(rule->key));
                break;
            }
        }
    }
    // The base zoom ratios are read as many as there are sensor names.
    const Lumora::_ConfigKey& namesKey =
        Lumora::Key(Lumora::EConfigKey::FocalLengthOverrideCameras);
    const ConfigKey* names = group.Find(namesKey.key);
    const ConfigKey* ratios =
        group.Find(Lumora::Key(Lumora::EConfigKey::FocalLengthBaseZoomRatios).key);
    if (group.name == namesKey.group && names != nullptr && ratios != nullptr &&
        names->values.size() != ratios->values.size()) {
        Add("count-mismatch", ratios->line, group.name, ratios->name,
            Values(ratios->values.size()) + ", " + namesKey.key + " has " +
                std::to_string(names->values.size()) + " (one ratio per sensor expected)");
    }
}

void Linter::CheckRows(const ConfigGroup& group, const KeyRule& rule) {
    const uint32_t keyCount = static_cast<uint32_t>(group.keys.size());
    const std::string range = std::string(rule.key) + "[0].." + rule.key + "[" +
                              std::to_string(keyCount == 0 ? 0 : keyCount - 1) + "]";
    const ConfigKey* rowZero = group.Find(std::string(rule.key) + "[0]");
    if (rowZero == nullptr && keyCount > 0) {
        Add("missing-row-zero", group.line, group.name, "",
            std::string(rule.key) + "[0] is missing: the library reads no row of this group");
    }
    for (const ConfigKey& key : group.keys) {
        std::string name;
        uint32_t index = 0;
        if (!SplitIndexed(key.name, &name, &index) || name != rule.key) {
            const std::string typo = RowNameTypo(key.name, rule.key);
            Add(typo.empty() ? "stray-row" : "unknown-key", key.line, group.name, key.name,
                typo.empty()
                    ? "not a row the library reads, but it counts as one: the rows read are " +
                          range
                    : typo);
            continue;
        }
        if (index >= keyCount) {
            Add("unreached-row", key.line, group.name, key.name,
                "never read: with " + std::to_string(keyCount) + " keys the rows read are " +
                    range);
            continue;
        }
        CheckValues(group, key, rule, true, rowZero);
    }
}

void Linter::CheckNamedRows(const ConfigGroup& group, const KeyRule& rule) {
    std::map<std::string, std::vector<const ConfigKey*>> byName;
    for (const ConfigKey& key : group.keys) {
        std::string name;
        uint32_t index = 0;
        if (!SplitIndexed(key.name, &name, &index)) {
            Add("bad-key-form", key.line, group.name, key.name,
                "not read by the library: the keys of this group are <name>[<row>]");
            continue;
        }
        byName[name].push_back(&key);
    }
    for (const ConfigKey& key : group.keys) {
        std::string name;
        uint32_t index = 0;
        if (!SplitIndexed(key.name, &name, &index)) {
            continue;
        }
        const std::vector<const ConfigKey*>& rows = byName[name];
        if (rule.form == KeyForm::NamedSingleRow && rows.size() != 1) {
            Add("repeated-name", key.line, group.name, key.name,
                std::to_string(rows.size()) + " entries for " + Quote(name) +
                    ": the library reads a name only when it has exactly one entry");
            continue;
        }
        const uint32_t limit = rule.form == KeyForm::NamedSingleRow
                                   ? static_cast<uint32_t>(group.keys.size())
                                   : static_cast<uint32_t>(rows.size());
        if (index >= limit) {
            Add("unreached-row", key.line, group.name, key.name,
                "never read: the rows of " + Quote(name) + " are read as " + name + "[0].." + name +
                    "[" + std::to_string(limit - 1) + "]");
            continue;
        }
        CheckValues(group, key, rule, true, group.Find(name + "[0]"));
    }
    if (rule.sizedByRowZero) {
        for (const auto& entry : byName) {
            if (group.Find(entry.first + "[0]") == nullptr) {
                Add("missing-row-zero", entry.second.front()->line, group.name,
                    entry.second.front()->name,
                    entry.first + "[0] is missing: the library reads no row of " +
                        Quote(entry.first));
            }
        }
    }
}

void Linter::CheckNamedByKey(const ConfigGroup& group, const KeyRule& rule) {
    const std::string prefix = std::string(rule.key) + "[";
    for (const ConfigKey& key : group.keys) {
        if (key.name.compare(0, prefix.size(), prefix) != 0 || key.name.back() != ']') {
            const std::string typo = RowNameTypo(key.name, rule.key);
            Add(typo.empty() ? "bad-key-form" : "unknown-key", key.line, group.name, key.name,
                typo.empty() ? "not read by the library: the keys of this group are " +
                                   std::string(rule.key) + "[<sensor name>]"
                             : typo);
            continue;
        }
        const size_t nameLength = key.name.size() - prefix.size() - 1;
        if (nameLength > kMaxRawSizeSensorName) {
            Add("name-too-long", key.line, group.name, key.name,
                "sensor name of " + std::to_string(nameLength) +
                    " characters: the library skips "
                    "names longer than " +
                    std::to_string(kMaxRawSizeSensorName));
            continue;
        }
        CheckValues(group, key, rule, false, nullptr);
    }
}

// "<sensor>[0x%04lX][0x%04X]" or "<sensor>[0x%04lX][-1]", as the library
// formats its key from the reduced caps mask and the operation mode.
void Linter::CheckSensorModeKey(const ConfigGroup& group, const ConfigKey& key,
                                const KeyRule& rule) {
    const std::string& name = key.name;
    auto fail = [&](const char* id, const std::string& reason) {
        Add(id, key.line, group.name, name, reason);
    };
    const size_t modeOpen = name.rfind('[');
    const size_t maskOpen = modeOpen == std::string::npos || modeOpen == 0
                                ? std::string::npos
                                : name.rfind('[', modeOpen - 1);
    if (name.back() != ']' || maskOpen == std::string::npos || maskOpen == 0 ||
        name[modeOpen - 1] != ']') {
        fail("bad-key-form",
             "not of the form <sensor>[0x<mask>][0x<operation mode>] or "
             "<sensor>[0x<mask>][-1]: the library never forms this key");
        return;
    }
    const std::string mask = name.substr(maskOpen + 1, modeOpen - maskOpen - 2);
    const std::string mode = name.substr(modeOpen + 1, name.size() - modeOpen - 2);
    // "0x" and upper case digits, at least four, no zero before a fifth.
    auto canonical = [](const std::string& text) {
        return text.size() >= 6 && text.compare(0, 2, "0x") == 0 &&
               (text.size() == 6 || text[2] != '0') &&
               std::all_of(text.begin() + 2, text.end(),
                           [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'); });
    };
    auto value = [](const std::string& text) { return strtoull(text.c_str() + 2, nullptr, 16); };
    // The finding for a mask or mode not written canonically, with the
    // canonical form of a number given another way.
    auto notCanonical = [&](const char* id, const char* what, const std::string& text,
                            const char* form) {
        std::string reason = std::string(what) + " " + Quote(text) +
                             " is not written as the library writes it (" + form + ")";
        bool negative = false;
        uint64_t number = 0;
        if (HostPlatform::ParseIntegerMagnitude(text, &negative, &number) == NumberStatus::Ok &&
            !negative) {
            char formatted[32];
            snprintf(formatted, sizeof(formatted), ": 0x%04llX",
                     static_cast<unsigned long long>(number));
            reason += formatted;
        }
        fail(id, reason);
    };
    if (!canonical(mask)) {
        notCanonical("bad-mask", "mask", mask, "\"0x%04lX\"");
        return;
    }
    if (mode != "-1" && !canonical(mode)) {
        notCanonical("bad-operation-mode", "operation mode", mode, "\"0x%04X\" or -1");
        return;
    }
    const uint64_t maskValue = value(mask);
    if (maskValue == 0 || (maskValue & ~kReducedMaskBits) != 0 ||
        ((maskValue & kMaskFallbackBit) != 0 && maskValue != kMaskFallbackBit)) {
        fail("bad-mask",
             "mask " + mask +
                 " is never a reduced caps mask (bits 0..17, not empty, bit 1 only alone)");
        return;
    }
    if (mode != "-1" && (value(mode) & 0x0F00) != 0) {
        fail("bad-operation-mode",
             "operation mode " + mode +
                 " has bits 8..11 set: the library clears them before forming the key");
        return;
    }
    CheckValues(group, key, rule, false, nullptr);
    uint32_t index = 0;
    if (key.values.size() != 1 ||
        HostPlatform::ParseUInt32(key.values[0], &index) != NumberStatus::Ok) {
        return;
    }
    // 0..255: the library keeps the low 8 bits, and a negative index becomes
    // another one (-1 is 255).
    if (index > 255) {
        fail("out-of-range",
             "sensor mode index " + key.values[0] +
                 (static_cast<int32_t>(index) < 0 ? " is negative" : " does not fit in 8 bits"));
    }
}

std::vector<LintFinding> Linter::Run() {
    for (const ConfigProblem& problem : m_text.problems) {
        if (problem.IsMalformed()) {
            Add(kMalformedRules[static_cast<size_t>(problem.kind)], problem.line, problem.group, "",
                HostPlatform::DescribeConfigProblem(problem) +
                    ": the configuration store refuses the whole file");
        } else {
            Add("duplicate-key", problem.line, problem.group, problem.key,
                HostPlatform::DescribeConfigProblem(problem));
        }
    }
    std::set<std::string> knownGroups;
    for (const KeyRule& rule : m_rules) {
        knownGroups.insert(rule.group);
    }
    for (const ConfigGroup& group : m_text.groups) {
        const std::vector<const KeyRule*> rules = RulesOf(group.name);
        if (rules.empty()) {
            for (const std::string& known : knownGroups) {
                if (LikelyTypo(group.name, known) && m_text.Find(known) == nullptr) {
                    Add("unknown-group", group.line, group.name, "",
                        "not a group the library reads; did you mean [" + known + "]?");
                    break;
                }
            }
            continue;
        }
        const KeyRule& first = *rules.front();
        switch (first.form) {
            case KeyForm::Single:
                CheckSingleKeys(group, rules);
                break;
            case KeyForm::Rows:
                CheckRows(group, first);
                break;
            case KeyForm::NamedRows:
            case KeyForm::NamedSingleRow:
                CheckNamedRows(group, first);
                break;
            case KeyForm::NamedByKey:
                CheckNamedByKey(group, first);
                break;
            case KeyForm::AnyKey:
            case KeyForm::SensorModeKey:
                for (const ConfigKey& key : group.keys) {
                    if (key.name.size() > kMaxFormedKey) {
                        Add("key-too-long", key.line, group.name, key.name,
                            "longer than 63 characters: the library never forms this key");
                    } else if (first.form == KeyForm::AnyKey) {
                        CheckValues(group, key, first, false, nullptr);
                    } else {
                        CheckSensorModeKey(group, key, first);
                    }
                }
                break;
        }
    }
    // With the low-latency path switched on, rows of preview pipelines too
    // short to hold its flag never turn it on (every row has row 0's count).
    const Lumora::_ConfigKey& lowLatency = Lumora::Key(Lumora::EConfigKey::SupportLowLatency);
    const Lumora::_ConfigKey& pipelines = Lumora::Key(Lumora::EConfigKey::PreviewPipelines);
    const ConfigGroup* switches = m_text.Find(lowLatency.group);
    const ConfigKey* on = switches != nullptr ? switches->Find(lowLatency.key) : nullptr;
    const ConfigGroup* rows = m_text.Find(pipelines.group);
    const ConfigKey* first = rows != nullptr ? rows->Find(pipelines.firstRow) : nullptr;
    const size_t needed = Lumora::kPipelineLowLatencyValue + 2;
    bool enabled = false;
    if (on != nullptr && on->values.size() == 1 &&
        HostPlatform::ParseBoolean(on->values[0], &enabled) && enabled && first != nullptr &&
        first->values.size() < needed) {
        Add("value-count", first->line, rows->name, first->name,
            Values(first->values.size()) + ", at least " + std::to_string(needed) +
                " expected: with " + lowLatency.key + " on, shorter rows have no low-latency flag");
    }
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](const LintFinding& a, const LintFinding& b) { return a.line < b.line; });
    return m_findings;
}

}  // namespace

std::string FormatFinding(const LintFinding& finding) {
    std::string text = finding.file + ":" + std::to_string(finding.line) + ": ";
    if (!finding.group.empty()) {
        text += "[" + finding.group + "]";
        text += finding.key.empty() ? ": " : " " + finding.key + ": ";
    }
    return text + finding.reason;
}

std::vector<LintFinding> LintConfiguration(const std::string& text, const std::string& file) {
    return Linter(file, HostPlatform::ReadConfigText(text)).Run();
}

}  // namespace UilayerSim
