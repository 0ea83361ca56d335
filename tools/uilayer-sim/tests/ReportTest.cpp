#include <gtest/gtest.h>

#include <string>

#include "core/Report.h"

namespace UilayerSim {
namespace {

ReportNode Sample() {
    ReportNode root = ReportNode::Map();
    root.Add("name", ReportNode::Text("a \"b\"\\c\n\t\x01"));
    root.Add("empty text", ReportNode::Text(""));
    root.Add("mode", ReportNode::Hex(0x8010));
    root.Add("ok", ReportNode::Boolean(true));
    root.Add("ratio", ReportNode::Real(2.5));
    root.Add("nothing", ReportNode());
    ReportNode& caps = root.Add("caps", ReportNode::InlineList());
    caps.Push(ReportNode::Text("CapsBokeh"));
    caps.Push(ReportNode::Text("CapsFps60"));
    root.Add("no caps", ReportNode::InlineList());
    ReportNode& steps = root.Add("steps", ReportNode::List());
    ReportNode& step = steps.Push(ReportNode::Map());
    step.Add("request", ReportNode::Integer(-3));
    ReportNode& inner = step.Add("camera caps", ReportNode::Map());
    inner.Add("camera 0", ReportNode::InlineList());
    steps.Push(ReportNode::Text("line"));
    root.Add("empty map", ReportNode::Map());
    return root;
}

TEST(ReportTest, WritesIndentedText) {
    EXPECT_EQ(
        "name: a \"b\"\\c\n\t\x01\n"
        "empty text: \"\"\n"
        "mode: 0x8010\n"
        "ok: true\n"
        "ratio: 2.5\n"
        "nothing: (none)\n"
        "caps: CapsBokeh, CapsFps60\n"
        "no caps: (none)\n"
        "steps:\n"
        "  - request: -3\n"
        "    camera caps:\n"
        "      camera 0: (none)\n"
        "  - line\n"
        "empty map: (none)\n",
        RenderText(Sample()));
}

TEST(ReportTest, WritesTheSameContentAsJson) {
    EXPECT_EQ(
        "{\n"
        "  \"name\": \"a \\\"b\\\"\\\\c\\n\\t\\u0001\",\n"
        "  \"empty_text\": \"\",\n"
        "  \"mode\": 32784,\n"
        "  \"ok\": true,\n"
        "  \"ratio\": 2.5,\n"
        "  \"nothing\": null,\n"
        "  \"caps\": [\"CapsBokeh\", \"CapsFps60\"],\n"
        "  \"no_caps\": [],\n"
        "  \"steps\": [\n"
        "    {\n"
        "      \"request\": -3,\n"
        "      \"camera_caps\": {\n"
        "        \"camera_0\": []\n"
        "      }\n"
        "    },\n"
        "    \"line\"\n"
        "  ],\n"
        "  \"empty_map\": {}\n"
        "}\n",
        RenderJson(Sample()));
}

// The JSON shapes of the report (labelled lists) show in examples/golden/photo.json.

}  // namespace
}  // namespace UilayerSim
