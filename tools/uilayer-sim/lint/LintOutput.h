// The two forms of lint output: text lines for people, with long runs of the
// same finding collapsed, and a JSON array for scripts.
#ifndef UILAYER_SIM_LINT_OUTPUT_H
#define UILAYER_SIM_LINT_OUTPUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "lint/Lint.h"

namespace UilayerSim {

// Findings of one shape (file, rule, and message with its quoted texts and
// numbers set aside) shown before the rest is summed up.
constexpr size_t kLintShownPerShape = 3;

// One line per finding (FormatFinding). When a shape has more than
// kLintShownPerShape + 1 findings, the first kLintShownPerShape are shown and
// "FILE:LINE: ... and N more like it" stands for the rest, LINE being the
// first one left out.
std::string RenderLintText(const std::vector<LintFinding>& findings);

// A JSON array, one object per finding and line, every finding:
// {"file", "line", "group", "key", "rule", "message"}; group and key are null
// when the finding has none.
std::string RenderLintJson(const std::vector<LintFinding>& findings);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_OUTPUT_H
