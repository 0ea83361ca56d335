#include "core/Report.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace UilayerSim {

ReportNode::ReportNode(Kind kind, std::string text, bool inlined)
    : m_kind(kind), m_inline(inlined), m_text(std::move(text)) {}

ReportNode ReportNode::Text(std::string text) {
    return ReportNode(Kind::Text, std::move(text));
}

ReportNode ReportNode::Integer(int64_t value) {
    return ReportNode(Kind::Integer, std::to_string(value));
}

ReportNode ReportNode::Hex(uint64_t value) {
    char text[24];
    snprintf(text, sizeof(text), "0x%" PRIX64, value);
    return Text(text).WithJson(ReportNode(Kind::Integer, std::to_string(value)));
}

ReportNode ReportNode::Boolean(bool value) {
    return ReportNode(Kind::Boolean, value ? "true" : "false");
}

ReportNode ReportNode::Real(double value) {
    if (!std::isfinite(value)) {
        return Text(std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf"));
    }
    char text[32];
    snprintf(text, sizeof(text), "%g", value);
    return ReportNode(Kind::Real, text);
}

ReportNode ReportNode::List() {
    return ReportNode(Kind::List);
}

ReportNode ReportNode::InlineList() {
    return ReportNode(Kind::List, "", true);
}

ReportNode ReportNode::Map() {
    return ReportNode(Kind::Map);
}

ReportNode ReportNode::Texts(const std::vector<std::string>& texts, bool inlined) {
    ReportNode node = inlined ? InlineList() : List();
    for (const std::string& text : texts) {
        node.Push(Text(text));
    }
    return node;
}

ReportNode& ReportNode::Add(const std::string& key, ReportNode value) {
    m_entries.emplace_back(key, std::move(value));
    return m_entries.back().second;
}

ReportNode& ReportNode::Push(ReportNode value) {
    m_items.push_back(std::move(value));
    return m_items.back();
}

ReportNode& ReportNode::WithJson(ReportNode json) {
    m_json = std::make_shared<const ReportNode>(std::move(json));
    return *this;
}

const ReportNode* ReportNode::Find(const std::string& key) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const auto& entry) { return entry.first == key; });
    return found != m_entries.end() ? &found->second : nullptr;
}

namespace {

bool IsContainer(const ReportNode& node) {
    return node.GetKind() == ReportNode::Kind::List || node.GetKind() == ReportNode::Kind::Map;
}

std::string ScalarText(const ReportNode& node) {
    if (node.GetKind() == ReportNode::Kind::Null) {
        return "(none)";
    }
    const bool emptyText = node.GetKind() == ReportNode::Kind::Text && node.Scalar().empty();
    return emptyText ? "\"\"" : node.Scalar();
}

std::string InlineText(const ReportNode& node) {
    if (node.Items().empty()) {
        return "(none)";
    }
    std::string text;
    for (const ReportNode& item : node.Items()) {
        text += (text.empty() ? "" : ", ") + ScalarText(item);
    }
    return text;
}

void WriteText(const ReportNode& node, int indent, std::string* out);

// "key: value" or "key:" with the value's lines below, after `prefix`.
void WriteEntry(const std::string& prefix, const std::string& key, const ReportNode& value,
                int indent, std::string* out) {
    *out += prefix + key + ":";
    if (value.IsInline()) {
        *out += " " + InlineText(value) + "\n";
    } else if (!IsContainer(value)) {
        *out += " " + ScalarText(value) + "\n";
    } else if (value.Empty()) {
        *out += " (none)\n";
    } else {
        *out += "\n";
        WriteText(value, indent + 2, out);
    }
}

void WriteText(const ReportNode& node, int indent, std::string* out) {
    const std::string pad(static_cast<size_t>(indent), ' ');
    if (node.GetKind() == ReportNode::Kind::Map) {
        for (const auto& entry : node.Entries()) {
            WriteEntry(pad, entry.first, entry.second, indent, out);
        }
        return;
    }
    for (const ReportNode& item : node.Items()) {
        if (item.GetKind() == ReportNode::Kind::Map && !item.Empty()) {
            // "- first: value", the other entries aligned under "first".
            bool first = true;
            for (const auto& entry : item.Entries()) {
                WriteEntry(first ? pad + "- " : pad + "  ", entry.first, entry.second, indent + 2,
                           out);
                first = false;
            }
        } else if (item.IsInline()) {
            *out += pad + "- " + InlineText(item) + "\n";
        } else if (IsContainer(item) && !item.Empty()) {
            *out += pad + "-\n";
            WriteText(item, indent + 2, out);
        } else {
            *out += pad + "- " + (IsContainer(item) ? "(none)" : ScalarText(item)) + "\n";
        }
    }
}

// Indented two spaces per level, or on one line when `compact` (the items of
// an inline list and all below them).
void WriteJson(const ReportNode& node, int indent, bool compact, std::string* out) {
    if (node.Json() != nullptr) {
        WriteJson(*node.Json(), indent, compact, out);
        return;
    }
    const bool map = node.GetKind() == ReportNode::Kind::Map;
    if (!IsContainer(node)) {
        const ReportNode::Kind kind = node.GetKind();
        *out += kind == ReportNode::Kind::Null   ? "null"
                : kind == ReportNode::Kind::Text ? JsonQuote(node.Scalar())
                                                 : node.Scalar();
        return;
    }
    if (node.Empty()) {
        *out += map ? "{}" : "[]";
        return;
    }
    compact = compact || node.IsInline();
    const std::string pad = compact ? "" : "\n" + std::string(static_cast<size_t>(indent + 2), ' ');
    *out += map ? "{" : "[";
    const size_t count = map ? node.Entries().size() : node.Items().size();
    for (size_t i = 0; i < count; ++i) {
        *out += (i == 0 ? "" : compact ? ", " : ",") + pad;
        if (map) {
            *out += JsonQuote(JsonKey(node.Entries()[i].first)) + ": ";
        }
        WriteJson(map ? node.Entries()[i].second : node.Items()[i], indent + 2, compact, out);
    }
    *out +=
        (compact ? "" : "\n" + std::string(static_cast<size_t>(indent), ' ')) + (map ? "}" : "]");
}

}  // namespace

std::string RenderText(const ReportNode& node) {
    std::string out;
    if (IsContainer(node)) {
        WriteText(node, 0, &out);
    } else {
        out = ScalarText(node) + "\n";
    }
    return out;
}

std::string RenderJson(const ReportNode& node) {
    std::string out;
    WriteJson(node, 0, false, &out);
    out += "\n";
    return out;
}

std::string JsonQuote(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        const char* escape = c == '"'    ? "\\\""
                             : c == '\\' ? "\\\\"
                             : c == '\n' ? "\\n"
                             : c == '\r' ? "\\r"
                             : c == '\t' ? "\\t"
                                         : nullptr;
        if (escape != nullptr) {
            out += escape;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char code[8];
            snprintf(code, sizeof(code), "\\u%04x", static_cast<unsigned>(c));
            out += code;
        } else {
            out += c;
        }
    }
    out += "\"";
    return out;
}

std::string JsonKey(const std::string& key) {
    auto upper = [](char c) { return c >= 'A' && c <= 'Z'; };
    auto lowerOrDigit = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    std::string out;
    for (size_t i = 0; i < key.size(); ++i) {
        const char c = key[i];
        if (c == ' ' || c == '-') {
            out += '_';
        } else if (upper(c)) {
            const bool afterLower = i > 0 && lowerOrDigit(key[i - 1]);
            const bool endsAcronym =
                i > 0 && upper(key[i - 1]) && i + 1 < key.size() && lowerOrDigit(key[i + 1]);
            if ((afterLower || endsAcronym) && !out.empty() && out.back() != '_') {
                out += '_';
            }
            out += static_cast<char>(c - 'A' + 'a');
        } else {
            out += c;
        }
    }
    return out;
}

ReportNode LabelledList(const ReportNode& map, const char* labelKey, bool numeric,
                        const char* valueKey) {
    ReportNode list = ReportNode::List();
    for (const auto& entry : map.Entries()) {
        ReportNode& item = list.Push(ReportNode::Map());
        const std::string& label = entry.first;
        if (numeric) {
            const size_t space = label.rfind(' ');
            item.Add(labelKey, ReportNode::Integer(strtoll(
                                   label.c_str() + (space == std::string::npos ? 0 : space + 1),
                                   nullptr, 10)));
        } else {
            item.Add(labelKey, ReportNode::Text(label));
        }
        const ReportNode& value = entry.second;
        if (value.GetKind() == ReportNode::Kind::Map && value.Json() == nullptr) {
            for (const auto& field : value.Entries()) {
                item.Add(field.first, field.second);
            }
        } else {
            item.Add(valueKey, value);
        }
    }
    return list;
}

}  // namespace UilayerSim
