// The replay report as a tree of ordered maps, lists and scalars, written
// either as indented text or as JSON. Both show the same content; a node may
// carry another shape of it for JSON (numbers and objects where the text
// shows labels), and JSON keys are the text keys in snake_case.
#ifndef UILAYER_SIM_REPORT_H
#define UILAYER_SIM_REPORT_H

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace UilayerSim {

class ReportNode {
public:
    enum class Kind { Null, Text, Integer, Boolean, Real, List, Map };

    ReportNode() = default;
    static ReportNode Text(std::string text);
    static ReportNode Integer(int64_t value);
    // An unsigned value written in hexadecimal ("0x8001"); a number in JSON.
    static ReportNode Hex(uint64_t value);
    static ReportNode Boolean(bool value);
    static ReportNode Real(double value);
    static ReportNode List();
    // A list of scalars written on one line in text ("a, b, c").
    static ReportNode InlineList();
    static ReportNode Map();
    // A list of texts; on one line in text when `inlined`.
    static ReportNode Texts(const std::vector<std::string>& texts, bool inlined);

    Kind GetKind() const { return m_kind; }
    bool IsInline() const { return m_inline; }
    const std::string& Scalar() const { return m_text; }
    const std::vector<std::pair<std::string, ReportNode>>& Entries() const { return m_entries; }
    const std::vector<ReportNode>& Items() const { return m_items; }
    bool Empty() const { return m_entries.empty() && m_items.empty(); }

    // Add (map entries, in insertion order) and Push return what they added.
    ReportNode& Add(const std::string& key, ReportNode value);
    ReportNode& Push(ReportNode value);
    // The shape of this node in JSON, when it is not the text's.
    ReportNode& WithJson(ReportNode json);
    const ReportNode* Json() const { return m_json.get(); }
    // The value of `key`, or null when the map has none.
    const ReportNode* Find(const std::string& key) const;

private:
    explicit ReportNode(Kind kind, std::string text = "", bool inlined = false);

    Kind m_kind = Kind::Null;
    bool m_inline = false;
    std::string m_text;  // scalars in their written form
    std::vector<std::pair<std::string, ReportNode>> m_entries;
    std::vector<ReportNode> m_items;
    std::shared_ptr<const ReportNode> m_json;
};

// Indented "key: value" text, two spaces per level, "- " before list items.
std::string RenderText(const ReportNode& node);
// JSON with two spaces per level; inline lists on one line.
std::string RenderJson(const ReportNode& node);
std::string JsonQuote(const std::string& text);
// A report key in snake_case: "camera index" -> "camera_index",
// "ParseStaticCapabilities" -> "parse_static_capabilities", "SAT" -> "sat".
std::string JsonKey(const std::string& key);
// The JSON shape of a map keyed by labels ("camera 0", a stream name): a list
// of objects, each with the label as `labelKey` (the number after the last
// space when `numeric`) and the value's own entries, or the value as
// `valueKey` when it is not a map.
ReportNode LabelledList(const ReportNode& map, const char* labelKey, bool numeric,
                        const char* valueKey);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_REPORT_H
