// The YAML field readers of the scenario reader: each reads one field of a
// given kind and, when it is wrong, throws ScenarioError with the file, line,
// field path and why.
#ifndef UILAYER_SIM_SCENARIO_FIELDS_H
#define UILAYER_SIM_SCENARIO_FIELDS_H

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <set>
#include <string>
#include <vector>

#include <HostConfigValues.h>

#include "core/NumberText.h"
#include "core/ScenarioReader.h"
#include "core/Suggest.h"

namespace UilayerSim {

// The ScenarioError of a YAML parse or access error in `path`.
ScenarioError YamlError(const std::string& path, const YAML::Exception& error,
                        const std::string& prefix = "");
// The text of the file at `path`, parsed; throws ScenarioError.
YAML::Node LoadYaml(const std::string& text, const std::string& path);

class ScenarioFields {
public:
    explicit ScenarioFields(std::string file) : m_file(std::move(file)) {}

    [[noreturn]] void Fail(const YAML::Node& node, const std::string& field,
                           const std::string& reason) const {
        throw ScenarioError(m_file, LineOf(node), field, reason);
    }

    // A doubtful value that the replay can still take: FILE:LINE: FIELD: reason.
    void Warn(const YAML::Node& node, const std::string& field, const std::string& reason) {
        m_warnings.push_back(ScenarioError(m_file, LineOf(node), field, reason).what());
    }
    const std::vector<std::string>& Warnings() const { return m_warnings; }

    // Runs `read`; a mistake it throws is kept and false returned, so that the
    // reader goes on with the next part. The mistakes kept so far are thrown
    // together when there are kMaxMistakes of them.
    template <typename Read>
    bool Collect(Read read) {
        try {
            read();
            return true;
        } catch (const ScenarioError& error) {
            if (m_mistakeCount == kMaxMistakes) {
                throw;  // the mistakes kept, on their way out
            }
            m_mistakes += m_mistakes.empty() ? error.what() : "\n" + std::string(error.what());
            if (++m_mistakeCount == kMaxMistakes) {
                ThrowMistakes();
            }
            return false;
        }
    }
    // Throws the mistakes kept so far, if there are any.
    void ThrowMistakes() const {
        if (m_mistakeCount > 0) {
            throw ScenarioError(m_mistakes);
        }
    }

    static int LineOf(const YAML::Node& node) {
        if (!node.IsDefined()) {
            return 0;
        }
        const YAML::Mark mark = node.Mark();
        return mark.line >= 0 ? mark.line + 1 : 0;
    }

    void RequireMap(const YAML::Node& node, const std::string& field) const {
        if (!node.IsMap()) {
            Fail(node, field, "expected a map of fields");
        }
    }

    // The map's fields must all be among `allowed`, from its `from`-th name on.
    void CheckFields(const YAML::Node& node, const std::string& field,
                     std::initializer_list<const char*> names, size_t from = 0) const {
        RequireMap(node, field);
        const std::vector<const char*> allowed(names.begin() + from, names.end());
        std::set<std::string> seen;
        for (const auto& item : node) {
            const std::string name = item.first.IsScalar() ? item.first.Scalar() : "?";
            if (!seen.insert(name).second) {
                Fail(item.first, Path(field, name), "given twice");
            }
            if (std::find_if(allowed.begin(), allowed.end(),
                             [&](const char* known) { return name == known; }) == allowed.end()) {
                Fail(item.first, Path(field, name),
                     "unknown field; expected one of: " + Join(allowed));
            }
        }
    }

    // A field that must be there; `parent` gives the line when it is not.
    YAML::Node Required(const YAML::Node& parent, const char* name,
                        const std::string& field) const {
        const YAML::Node node = parent[name];
        if (!node.IsDefined() || node.IsNull()) {
            Fail(parent, Path(field, name), "missing");
        }
        return node;
    }

    static std::string Path(const std::string& parent, const std::string& name) {
        return parent.empty() ? name : parent + "." + name;
    }
    static std::string Index(const std::string& parent, size_t index) {
        return parent + "[" + std::to_string(index) + "]";
    }

    std::string Text(const YAML::Node& node, const std::string& field) const {
        if (!node.IsScalar()) {
            Fail(node, field, "expected a single value");
        }
        return node.Scalar();
    }

    int64_t Integer(const YAML::Node& node, const std::string& field, int64_t min,
                    int64_t max) const {
        const std::string text = Text(node, field);
        int64_t value = 0;
        if (!ParseIntegerText(text, &value) && !IsIntegerSyntax(text)) {
            Fail(node, field, "\"" + text + "\" is not an integer");
        }
        if (!ParseIntegerText(text, &value) || value < min || value > max) {
            Fail(node, field,
                 text + " is out of range (" + std::to_string(min) + ".." + std::to_string(max) +
                     ")");
        }
        return value;
    }

    uint32_t Unsigned32(const YAML::Node& node, const std::string& field) const {
        return static_cast<uint32_t>(Integer(node, field, 0, UINT32_MAX));
    }

    int32_t Signed32(const YAML::Node& node, const std::string& field) const {
        return static_cast<int32_t>(Integer(node, field, INT32_MIN, INT32_MAX));
    }

    // A float: finite, and within a float's range (what underflows is 0).
    float Number(const YAML::Node& node, const std::string& field) const {
        const std::string text = Text(node, field);
        if (NamesNonFinite(text)) {
            Fail(node, field, text + " is not a finite number: nan and inf are refused");
        }
        char* end = nullptr;
        const double value = strtod(text.c_str(), &end);
        if (text.empty() || end != text.c_str() + text.size()) {
            Fail(node, field, "\"" + text + "\" is not a number");
        }
        if (std::fabs(value) > FLT_MAX) {
            char range[40];
            snprintf(range, sizeof(range), "%g..%g", -FLT_MAX, FLT_MAX);
            Fail(node, field, text + " is out of range (" + range + ")");
        }
        return static_cast<float>(value);
    }

    bool Boolean(const YAML::Node& node, const std::string& field) const {
        std::string text = Text(node, field);
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return static_cast<char>(tolower(c)); });
        if (text == "true" || text == "yes" || text == "1") {
            return true;
        }
        if (text == "false" || text == "no" || text == "0") {
            return false;
        }
        Fail(node, field, "\"" + node.Scalar() + "\" is not true or false");
    }

    // An integer, or a name of `table`.
    int64_t Named(const YAML::Node& node, const std::string& field, NameTable table,
                  const char* what, int64_t min, int64_t max) const {
        const std::string text = Text(node, field);
        int64_t value = 0;
        if (NumberByName(table, text, &value)) {
            return value;
        }
        if (!ParseIntegerText(text, &value)) {
            Fail(node, field,
                 "unknown " + std::string(what) + " \"" + text + "\"" +
                     DidYouMean(text, AcceptedNames(table)));
        }
        return Integer(node, field, min, max);
    }

    // Reads an optional field into `out` with `read`; leaves `out` as it is
    // when the field is absent. Whether it is there.
    template <typename T, typename Value, typename Self>
    bool Optional(const YAML::Node& node, const std::string& field, const char* name, T* out,
                  Value (Self::*read)(const YAML::Node&, const std::string&) const) const {
        if (!node[name].IsDefined()) {
            return false;
        }
        *out =
            static_cast<T>((static_cast<const Self*>(this)->*read)(node[name], Path(field, name)));
        return true;
    }

    // One value, or a list of them, each read with `read` into `out`.
    template <typename T, typename Read>
    void ScalarOrList(const YAML::Node& node, const std::string& field, std::vector<T>* out,
                      Read read) const {
        if (node.IsScalar()) {
            out->push_back(static_cast<T>(read(node, field)));
            return;
        }
        Sequence(node, field);
        for (size_t i = 0; i < node.size(); ++i) {
            out->push_back(static_cast<T>(read(node[i], Index(field, i))));
        }
    }

    // A "no_..." switch: true when it is given and true, and then none of
    // `excluded` may be given.
    bool Without(const YAML::Node& node, const std::string& field, const char* name,
                 std::initializer_list<const char*> excluded, const char* reason) const {
        const YAML::Node flag = node[name];
        if (!flag.IsDefined() || !Boolean(flag, Path(field, name))) {
            return false;
        }
        for (const char* other : excluded) {
            if (node[other].IsDefined()) {
                Fail(flag, Path(field, name), reason);
            }
        }
        return true;
    }

    const YAML::Node& Sequence(const YAML::Node& node, const std::string& field) const {
        if (!node.IsSequence()) {
            Fail(node, field, "expected a list");
        }
        return node;
    }

    uint32_t Capability(const YAML::Node& node, const std::string& field) const {
        const std::string text = Text(node, field);
        uint32_t bit = 0;
        if (CapabilityByName(text, &bit)) {
            return bit;
        }
        int64_t value = 0;
        if (!ParseIntegerText(text, &value)) {
            Fail(node, field,
                 "unknown capability \"" + text + "\"" +
                     DidYouMean(text, AcceptedNames(NameTable::Capabilities)));
        }
        if (value < 0 || value > 99) {
            Fail(node, field,
                 "capability " + text +
                     " is outside 0..99 (the library treats it as a programming error)");
        }
        return static_cast<uint32_t>(value);
    }

    std::vector<uint32_t> Capabilities(const YAML::Node& node, const std::string& field) const {
        std::vector<uint32_t> bits;
        ScalarOrList(node, field, &bits, [this](const YAML::Node& item, const std::string& name) {
            return Capability(item, name);
        });
        return bits;
    }

protected:
    static std::string Join(const std::vector<const char*>& names) {
        std::string text;
        for (const char* name : names) {
            text += (text.empty() ? "" : ", ") + std::string(name);
        }
        return text;
    }

    static constexpr size_t kMaxMistakes = 20;

    std::string m_file;
    std::vector<std::string> m_warnings;
    std::string m_mistakes;
    size_t m_mistakeCount = 0;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCENARIO_FIELDS_H
