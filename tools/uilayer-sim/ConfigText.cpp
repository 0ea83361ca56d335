#include "ConfigText.h"

#include <cstddef>

namespace UilayerSim {

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

std::string Trim(const std::string& text) {
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

std::string Unquote(const std::string& field) {
    std::string value = Trim(field);
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        value = value.substr(1, value.size() - 2);
    }
    return value;
}

std::vector<std::string> SplitValues(const std::string& rightSide) {
    std::vector<std::string> values;
    const std::string text = Trim(rightSide);
    if (text.empty()) {
        return values;
    }
    bool quoted = false;
    size_t start = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            quoted = !quoted;
        } else if (text[i] == ',' && !quoted) {
            values.push_back(Unquote(text.substr(start, i - start)));
            start = i + 1;
        }
    }
    values.push_back(Unquote(text.substr(start)));
    return values;
}

}  // namespace

const ConfigKey* ConfigGroup::Find(const std::string& key) const {
    for (const ConfigKey& entry : keys) {
        if (entry.name == key) {
            return &entry;
        }
    }
    return nullptr;
}

const ConfigGroup* ConfigText::Find(const std::string& group) const {
    for (const ConfigGroup& entry : groups) {
        if (entry.name == group) {
            return &entry;
        }
    }
    return nullptr;
}

ConfigText ParseConfigText(const std::string& input) {
    ConfigText result;
    std::string text = input;
    // A byte order mark in front of the first line is not part of it.
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        text.erase(0, 3);
    }
    ConfigGroup* group = nullptr;
    int lineNumber = 0;
    size_t position = 0;
    while (position < text.size()) {
        size_t newline = text.find('\n', position);
        if (newline == std::string::npos) {
            newline = text.size();
        }
        ++lineNumber;
        const std::string line = Trim(text.substr(position, newline - position));
        position = newline + 1;

        if (line.empty() || line.front() == '#' || line.front() == ';') {
            continue;
        }
        const std::string groupName = group != nullptr ? group->name : std::string();
        if (line.front() == '[') {
            if (line.size() < 2 || line.back() != ']') {
                result.malformed.push_back({lineNumber, "", "", "a group line must end with ']'"});
                continue;
            }
            const std::string name = Trim(line.substr(1, line.size() - 2));
            group = nullptr;
            for (ConfigGroup& existing : result.groups) {
                if (existing.name == name) {
                    group = &existing;
                }
            }
            if (group == nullptr) {
                result.groups.push_back(ConfigGroup{name, lineNumber, {}});
                group = &result.groups.back();
            }
            continue;
        }
        if (group == nullptr) {
            result.malformed.push_back({lineNumber, "", "", "text outside a group"});
            continue;
        }
        const size_t equals = line.find('=');
        if (equals == std::string::npos) {
            result.malformed.push_back({lineNumber, groupName, "", "a line with no '='"});
            continue;
        }
        const std::string key = Trim(line.substr(0, equals));
        if (key.empty()) {
            result.malformed.push_back({lineNumber, groupName, "", "a key line with no key"});
            continue;
        }
        ConfigKey entry{key, SplitValues(line.substr(equals + 1)), lineNumber};
        bool replaced = false;
        for (ConfigKey& existing : group->keys) {
            if (existing.name == key) {
                result.duplicates.push_back({lineNumber, groupName, key,
                                             "repeats the key of line " +
                                                 std::to_string(existing.line) +
                                                 ", whose values are dropped"});
                existing = entry;
                replaced = true;
            }
        }
        if (!replaced) {
            group->keys.push_back(entry);
        }
    }
    return result;
}

bool ParseIntegerMagnitude(const std::string& text, bool* negative, uint64_t* magnitude) {
    size_t i = 0;
    *negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        *negative = text[i] == '-';
        ++i;
    }
    int base = 10;
    if (i + 1 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X')) {
        base = 16;
        i += 2;
    }
    if (i >= text.size()) {
        return false;
    }
    uint64_t value = 0;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        int digit = -1;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        }
        if (digit < 0 || digit >= base) {
            return false;
        }
        if (value > (UINT64_MAX - static_cast<uint64_t>(digit)) / static_cast<uint64_t>(base)) {
            return false;
        }
        value = value * static_cast<uint64_t>(base) + static_cast<uint64_t>(digit);
    }
    *magnitude = value;
    return true;
}

}  // namespace UilayerSim
