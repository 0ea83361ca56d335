// Reader of the host configuration text.
//
// A group line starts with '[' and ends with ']'; its name is the trimmed text
// between them. A key line needs an open group, an '=' and a non-empty key.
// Values are split at commas outside double quotes and trimmed; a value that is
// wholly in double quotes loses them and keeps everything inside. An empty
// right side is a key with no values. A repeated key replaces the earlier one
// in its place; a repeated group header continues the same group.
#include <HostConfigText.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace HostPlatform {

namespace {

std::string_view Trim(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r\n\v\f";
    const size_t begin = text.find_first_not_of(kSpace);
    if (begin == std::string_view::npos) {
        return text.substr(text.size());
    }
    return text.substr(begin, text.find_last_not_of(kSpace) + 1 - begin);
}

std::string UnquoteValue(std::string_view field) {
    field = Trim(field);
    if (field.size() >= 2 && field.front() == '"' && field.back() == '"') {
        field = field.substr(1, field.size() - 2);
    }
    return std::string(field);
}

std::vector<std::string> SplitValues(std::string_view text) {
    std::vector<std::string> values;
    text = Trim(text);
    if (text.empty()) {
        return values;
    }
    bool quoted = false;
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            quoted = !quoted;
        } else if (text[i] == ',' && !quoted) {
            values.push_back(UnquoteValue(text.substr(start, i - start)));
            start = i + 1;
        }
    }
    values.push_back(UnquoteValue(text.substr(start)));
    return values;
}

// Builds the groups, finding repeated groups and keys by name.
class TextBuilder {
public:
    explicit TextBuilder(ConfigText* text) : m_text(text) {}

    void OpenGroup(std::string name, int line) {
        const auto [found, added] = m_groupIndex.try_emplace(name, m_text->groups.size());
        m_current = found->second;
        if (added) {
            m_keyIndex.emplace_back();
            m_text->groups.push_back(ConfigGroup{std::move(name), line, {}});
        }
    }

    bool HasGroup() const { return m_current != kNone; }
    const std::string& GroupName() const {
        static const std::string kNoGroup;
        return HasGroup() ? m_text->groups[m_current].name : kNoGroup;
    }

    void AddKey(std::string name, std::vector<std::string> values, int line) {
        ConfigGroup& group = m_text->groups[m_current];
        std::unordered_map<std::string, size_t>& index = m_keyIndex[m_current];
        const auto [found, added] = index.try_emplace(name, group.keys.size());
        if (!added) {
            ConfigKey& earlier = group.keys[found->second];
            m_text->problems.push_back(ConfigProblem{line, ConfigProblemKind::RepeatedKey,
                                                     group.name, name, earlier.line});
            earlier.values = std::move(values);
            earlier.line = line;
            return;
        }
        group.keys.push_back(ConfigKey{std::move(name), std::move(values), line});
    }

    // A broken group line belongs to no group; the group before it stays open.
    void Malformed(int line, ConfigProblemKind kind) {
        const std::string group =
            kind == ConfigProblemKind::UnclosedGroup ? std::string() : GroupName();
        m_text->problems.push_back(ConfigProblem{line, kind, group, "", 0});
    }

private:
    static constexpr size_t kNone = static_cast<size_t>(-1);

    ConfigText* m_text;
    size_t m_current = kNone;
    std::unordered_map<std::string, size_t> m_groupIndex;
    std::vector<std::unordered_map<std::string, size_t>> m_keyIndex;
};

// The first element of `items` that `test` accepts, or null.
template <typename T, typename Test>
const T* FirstOf(const std::vector<T>& items, Test test) {
    const auto found = std::find_if(items.begin(), items.end(), test);
    return found != items.end() ? &*found : nullptr;
}

}  // namespace

const ConfigKey* ConfigGroup::Find(std::string_view key) const {
    return FirstOf(keys, [&](const ConfigKey& entry) { return entry.name == key; });
}

const ConfigGroup* ConfigText::Find(std::string_view group) const {
    return FirstOf(groups, [&](const ConfigGroup& entry) { return entry.name == group; });
}

const ConfigProblem* ConfigText::FirstMalformed() const {
    return FirstOf(problems, [](const ConfigProblem& problem) { return problem.IsMalformed(); });
}

ConfigText ReadConfigText(std::string_view text) {
    // A byte order mark in front of the first line is not part of it.
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    ConfigText result;
    TextBuilder builder(&result);
    int lineNumber = 0;
    size_t position = 0;
    while (position < text.size()) {
        size_t newline = text.find('\n', position);
        if (newline == std::string_view::npos) {
            newline = text.size();
        }
        ++lineNumber;
        // Trimming also drops the '\r' of a "\r\n" line end.
        const std::string_view line = Trim(text.substr(position, newline - position));
        position = newline + 1;

        if (line.empty() || line.front() == '#' || line.front() == ';') {
            continue;
        }
        if (line.front() == '[') {
            if (line.size() < 2 || line.back() != ']') {
                builder.Malformed(lineNumber, ConfigProblemKind::UnclosedGroup);
                continue;
            }
            builder.OpenGroup(std::string(Trim(line.substr(1, line.size() - 2))), lineNumber);
            continue;
        }
        if (!builder.HasGroup()) {
            builder.Malformed(lineNumber, ConfigProblemKind::TextOutsideGroup);
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            builder.Malformed(lineNumber, ConfigProblemKind::NoEquals);
            continue;
        }
        const std::string_view key = Trim(line.substr(0, equals));
        if (key.empty()) {
            builder.Malformed(lineNumber, ConfigProblemKind::EmptyKey);
            continue;
        }
        builder.AddKey(std::string(key), SplitValues(line.substr(equals + 1)), lineNumber);
    }
    return result;
}

std::string DescribeConfigProblem(const ConfigProblem& problem) {
    if (problem.kind == ConfigProblemKind::RepeatedKey) {
        return "repeats the key of line " + std::to_string(problem.earlierLine) +
               ", whose values are dropped";
    }
    // In the order of ConfigProblemKind.
    static constexpr const char* kMalformed[] = {
        "a group line must end with ']'",
        "text outside a group",
        "a line with no '='",
        "a key line with no key",
    };
    const size_t kind = static_cast<size_t>(problem.kind);
    return kind < std::size(kMalformed) ? kMalformed[kind] : "a malformed line";
}

}  // namespace HostPlatform
