#include "Report.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace UilayerSim {

ReportNode ReportNode::Text(std::string text) {
    ReportNode node;
    node.m_kind = Kind::Text;
    node.m_text = std::move(text);
    return node;
}

ReportNode ReportNode::Integer(int64_t value) {
    ReportNode node;
    node.m_kind = Kind::Integer;
    node.m_text = std::to_string(value);
    return node;
}

ReportNode ReportNode::Hex(uint64_t value) {
    char text[24];
    snprintf(text, sizeof(text), "0x%" PRIX64, value);
    return Text(text);
}

ReportNode ReportNode::Boolean(bool value) {
    ReportNode node;
    node.m_kind = Kind::Boolean;
    node.m_text = value ? "true" : "false";
    return node;
}

ReportNode ReportNode::Real(double value) {
    if (!std::isfinite(value)) {
        return Text(std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf"));
    }
    char text[32];
    snprintf(text, sizeof(text), "%g", value);
    ReportNode node;
    node.m_kind = Kind::Real;
    node.m_text = text;
    return node;
}

ReportNode ReportNode::List() {
    ReportNode node;
    node.m_kind = Kind::List;
    return node;
}

ReportNode ReportNode::InlineList() {
    ReportNode node = List();
    node.m_inline = true;
    return node;
}

ReportNode ReportNode::Map() {
    ReportNode node;
    node.m_kind = Kind::Map;
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

const ReportNode* ReportNode::Find(const std::string& key) const {
    for (const auto& entry : m_entries) {
        if (entry.first == key) {
            return &entry.second;
        }
    }
    return nullptr;
}

namespace {

bool IsContainer(const ReportNode& node) {
    return node.GetKind() == ReportNode::Kind::List || node.GetKind() == ReportNode::Kind::Map;
}

std::string ScalarText(const ReportNode& node) {
    switch (node.GetKind()) {
        case ReportNode::Kind::Null:
            return "(none)";
        case ReportNode::Kind::Text:
            return node.Scalar().empty() ? "\"\"" : node.Scalar();
        default:
            return node.Scalar();
    }
}

std::string InlineText(const ReportNode& node) {
    if (node.Items().empty()) {
        return "(none)";
    }
    std::string text;
    for (const ReportNode& item : node.Items()) {
        if (!text.empty()) {
            text += ", ";
        }
        text += ScalarText(item);
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

void WriteJson(const ReportNode& node, int indent, std::string* out);

void WriteJsonScalar(const ReportNode& node, std::string* out) {
    switch (node.GetKind()) {
        case ReportNode::Kind::Null:
            *out += "null";
            break;
        case ReportNode::Kind::Text:
            *out += JsonQuote(node.Scalar());
            break;
        default:
            *out += node.Scalar();
            break;
    }
}

void WriteJson(const ReportNode& node, int indent, std::string* out) {
    const std::string pad(static_cast<size_t>(indent + 2), ' ');
    const std::string closePad(static_cast<size_t>(indent), ' ');
    if (node.GetKind() == ReportNode::Kind::Map) {
        if (node.Empty()) {
            *out += "{}";
            return;
        }
        *out += "{\n";
        bool first = true;
        for (const auto& entry : node.Entries()) {
            *out += first ? "" : ",\n";
            first = false;
            *out += pad + JsonQuote(entry.first) + ": ";
            WriteJson(entry.second, indent + 2, out);
        }
        *out += "\n" + closePad + "}";
    } else if (node.GetKind() == ReportNode::Kind::List) {
        if (node.Empty()) {
            *out += "[]";
            return;
        }
        if (node.IsInline()) {
            *out += "[";
            bool first = true;
            for (const ReportNode& item : node.Items()) {
                *out += first ? "" : ", ";
                first = false;
                WriteJson(item, indent, out);
            }
            *out += "]";
            return;
        }
        *out += "[\n";
        bool first = true;
        for (const ReportNode& item : node.Items()) {
            *out += first ? "" : ",\n";
            first = false;
            *out += pad;
            WriteJson(item, indent + 2, out);
        }
        *out += "\n" + closePad + "]";
    } else {
        WriteJsonScalar(node, out);
    }
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
    WriteJson(node, 0, &out);
    out += "\n";
    return out;
}

std::string JsonQuote(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    char escape[8];
                    snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(c));
                    out += escape;
                } else {
                    out += c;
                }
                break;
        }
    }
    out += "\"";
    return out;
}

}  // namespace UilayerSim
