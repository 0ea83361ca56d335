#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lint/Lint.h"

namespace UilayerSim {
namespace {

std::vector<LintFinding> Outside(const std::string& file, int lines) {
    std::vector<LintFinding> findings;
    for (int line = 1; line <= lines; ++line) {
        findings.push_back({file, line, "", "", "text-outside-group", "text outside a group"});
    }
    return findings;
}

TEST(LintOutputTest, CollapsesLongRunsOfOneShapeOnly) {
    // Up to one more than the shown findings, everything is shown.
    const std::string four = RenderLintText(Outside("a", 4));
    EXPECT_EQ(4, std::count(four.begin(), four.end(), '\n'));
    EXPECT_EQ(std::string::npos, four.find("more like it"));
    std::vector<LintFinding> findings = Outside("dir/a.yaml", 6);
    // Same rule, message differing only in quoted text and numbers: same shape.
    findings.insert(findings.begin() + 1,
                    {"dir/a.yaml", 1, "G", "k", "out-of-range", "value 1 \"9\" is out of range"});
    findings.push_back(
        {"dir/a.yaml", 7, "G", "k", "out-of-range", "value 12 \"x9\" is out of range"});
    findings.push_back({"b.conf", 8, "", "", "text-outside-group", "text outside a group"});
    EXPECT_EQ(
        "dir/a.yaml:1: text outside a group\n"
        "dir/a.yaml:1: [G] k: value 1 \"9\" is out of range\n"
        "dir/a.yaml:2: text outside a group\n"
        "dir/a.yaml:3: text outside a group\n"
        "dir/a.yaml:4: ... and 3 more like it\n"
        "dir/a.yaml:7: [G] k: value 12 \"x9\" is out of range\n"
        "b.conf:8: text outside a group\n",
        RenderLintText(findings));
    // Other words outside quotes make another shape; 0 is a digit like any.
    std::vector<LintFinding> mixed;
    for (int line = 1; line <= 5; ++line) {
        mixed.push_back({"c", line, "", "", "r", (line % 2 ? "a \"x\" 10" : "b \"x\" 2")});
    }
    EXPECT_EQ(std::string::npos, RenderLintText(mixed).find("more like it"));
}

// Every finding in JSON, escapes included, shows in lint/findings.json.

}  // namespace
}  // namespace UilayerSim
