// Parser of the host configuration text:
//
//   # comment            (also ; as the first non-blank character)
//   [Group Name]
//   Key = value, 0x10, "quoted, kept as one value"
//
// A group line starts with '[' and ends with ']'; its name is the trimmed text
// between them. A key line needs an open group, an '=' and a non-empty key.
// Values are split at commas outside double quotes and trimmed; a value that is
// wholly in double quotes loses them and keeps everything inside. An empty
// right side is a key with no values. A repeated key replaces the earlier one
// in its place; a repeated group header continues the same group.
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ConfigurationData.h"

namespace HostPlatform {
namespace Internal {

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

std::string_view Trim(std::string_view text) {
    size_t begin = 0;
    size_t end = text.size();
    while (begin < end && IsSpace(text[begin])) {
        ++begin;
    }
    while (end > begin && IsSpace(text[end - 1])) {
        --end;
    }
    return text.substr(begin, end - begin);
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

}  // namespace

void ConfigurationGroup::Set(std::string name, std::vector<std::string> values) {
    const auto it = m_index.find(name);
    if (it != m_index.end()) {
        m_keys[it->second].values = std::move(values);
        return;
    }
    m_index.emplace(name, m_keys.size());
    m_keys.push_back(ConfigurationKey{std::move(name), std::move(values)});
}

ConfigurationKey* ConfigurationGroup::Find(std::string_view name) {
    const auto it = m_index.find(std::string(name));
    return it != m_index.end() ? &m_keys[it->second] : nullptr;
}

ConfigurationGroup& ConfigurationData::Open(const std::string& name) {
    const auto it = m_index.find(name);
    if (it != m_index.end()) {
        return m_groups[it->second];
    }
    m_index.emplace(name, m_groups.size());
    m_groups.emplace_back();
    return m_groups.back();
}

ConfigurationGroup* ConfigurationData::Find(std::string_view name) {
    const auto it = m_index.find(std::string(name));
    return it != m_index.end() ? &m_groups[it->second] : nullptr;
}

int ParseConfiguration(std::string_view text, ConfigurationData* data) {
    // A byte order mark in front of the first line is not part of it.
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    ConfigurationGroup* group = nullptr;
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
                return lineNumber;
            }
            group = &data->Open(std::string(Trim(line.substr(1, line.size() - 2))));
            continue;
        }
        if (group == nullptr) {
            return lineNumber;
        }
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            return lineNumber;
        }
        const std::string_view key = Trim(line.substr(0, equals));
        if (key.empty()) {
            return lineNumber;
        }
        group->Set(std::string(key), SplitValues(line.substr(equals + 1)));
    }
    return 0;
}

}  // namespace Internal
}  // namespace HostPlatform
