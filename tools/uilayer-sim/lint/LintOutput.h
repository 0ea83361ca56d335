// The two forms of lint output: text lines for people, JSON for scripts.
#ifndef UILAYER_SIM_LINT_OUTPUT_H
#define UILAYER_SIM_LINT_OUTPUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "lint/Lint.h"

namespace UilayerSim {

// Findings of one shape (file, rule, message but for its quoted texts and
// numbers) shown before "FILE:LINE: ... and N more like it" stands for the rest.
constexpr size_t kLintShownPerShape = 3;

// One line per finding (FormatFinding), long runs of one shape collapsed.
std::string RenderLintText(const std::vector<LintFinding>& findings);

// A JSON array, an object a line: file, line, group, key (null when none),
// rule, message.
std::string RenderLintJson(const std::vector<LintFinding>& findings);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_LINT_OUTPUT_H
