// Configuration group and key names are written once, in the library's table
// (common/ConfigKeys.h): no C++ string literal outside uilayer/ may spell one.
// Tests and their data are left alone. Keys that are ordinary words ("Mode",
// "mode", "scene", "App", "APP", "Size", "operationMode") cannot be told from
// unrelated text and are not looked for, nor are the keys that share their
// name with a field of a public record the library fills from them
// (_SatStaticCaps, StarModeAEInfo), which reports name by the field; every
// group name and every other key is.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "common/ConfigKeys.h"

namespace Lumora {
namespace {

namespace fs = std::filesystem;

std::set<std::string> NamesToFind() {
    const std::set<std::string> ordinary = {
        "", "Mode", "mode", "scene", "App", "APP", "Size", "operationMode",
        // Fields of the records of include/IuiLayer.h.
        "supportBokehIzoomSeamless", "videoMaxRtCount", "isEnableSkipMiddleSensor", "expTime"};
    std::set<std::string> names;
    for (const Lumora::_ConfigKey& key : Lumora::kConfigKeys) {
        names.insert(key.group);
        if (ordinary.count(key.key) == 0) {
            names.insert(key.key);
        }
    }
    return names;
}

bool Skipped(const fs::path& relative) {
    // Going away with the fuzz session model; drop these three once they are gone.
    static const std::set<std::string> kLeaving = {"fuzz/SessionRunner.cpp", "fuzz/SessionModel.h",
                                                   "fuzz/MakeSeeds.cpp"};
    const std::string text = relative.generic_string();
    if (kLeaving.count(text) != 0 || text.rfind("fuzz/corpus/", 0) == 0) {
        return true;
    }
    for (const fs::path& part : relative) {
        const std::string name = part.string();
        if (name == "uilayer" || name == "tests" || name == "test" || name == "data" ||
            name.rfind("build", 0) == 0 || name[0] == '.') {
            return true;
        }
    }
    return false;
}

struct Literal {
    int line;
    std::string text;
};

// The string literals of C++ source text, comments and character literals
// left out (escapes kept as written; raw strings to their closing delimiter).
std::vector<Literal> StringLiterals(const std::string& source) {
    std::vector<Literal> literals;
    int line = 1;
    for (size_t i = 0; i < source.size(); ++i) {
        const char c = source[i];
        const char next = i + 1 < source.size() ? source[i + 1] : '\0';
        if (c == '\n') {
            ++line;
        } else if (c == '/' && next == '/') {
            i = source.find('\n', i) - 1;
        } else if (c == '/' && next == '*') {
            const size_t end = source.find("*/", i + 2);
            if (end == std::string::npos) {
                break;
            }
            for (size_t k = i; k < end; ++k) {
                line += source[k] == '\n';
            }
            i = end + 1;
        } else if (c == 'R' && next == '"') {
            const size_t open = source.find('(', i);
            const std::string close = ")" + source.substr(i + 2, open - i - 2) + "\"";
            const size_t end = open == std::string::npos ? open : source.find(close, open);
            if (end == std::string::npos) {
                break;
            }
            literals.push_back({line, source.substr(open + 1, end - open - 1)});
            for (size_t k = i; k < end; ++k) {
                line += source[k] == '\n';
            }
            i = end + close.size() - 1;
        } else if (c == '"' || c == '\'') {
            size_t end = i + 1;
            while (end < source.size() && source[end] != c && source[end] != '\n') {
                end += source[end] == '\\' ? 2 : 1;
            }
            if (c == '"') {
                literals.push_back({line, source.substr(i + 1, end - i - 1)});
            }
            i = end;
        } else if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
                   (c >= '0' && c <= '9')) {
            // Digit separators and identifiers ending in R are not literals.
            while (i + 1 < source.size() &&
                   (std::isalnum(static_cast<unsigned char>(source[i + 1])) ||
                    source[i + 1] == '_' || source[i + 1] == '\'')) {
                ++i;
            }
        }
    }
    return literals;
}

TEST(ConfigKeyLiteralsTest, NoGroupOrKeyIsSpelledOutsideTheLibrary) {
    const std::set<std::string> names = NamesToFind();
    const fs::path root = UILAYER_SOURCE_DIR;
    std::vector<std::string> found;
    size_t files = 0;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        const fs::path relative = fs::relative(it->path(), root);
        if (Skipped(relative)) {
            if (it->is_directory()) {
                it.disable_recursion_pending();
            }
            continue;
        }
        const std::string extension = it->path().extension().string();
        if (!it->is_regular_file() || (extension != ".cpp" && extension != ".h")) {
            continue;
        }
        ++files;
        std::ifstream in(it->path());
        std::ostringstream source;
        source << in.rdbuf();
        for (const Literal& literal : StringLiterals(source.str())) {
            bool spelled = names.count(literal.text) != 0;
            for (const Lumora::_ConfigKey& key : Lumora::kConfigKeys) {
                spelled = spelled || literal.text.find(std::string("config:") + key.group + "/") !=
                                         std::string::npos;
            }
            if (spelled) {
                found.push_back(relative.generic_string() + ":" + std::to_string(literal.line) +
                                ": \"" + literal.text + "\"");
            }
        }
    }
    EXPECT_GT(files, 50u);
    EXPECT_EQ(std::vector<std::string>{}, found);
}

// The reader of the check itself: comments, character literals and raw
// strings, and names inside longer text.
TEST(ConfigKeyLiteralsTest, LiteralsAreFoundWhereCompilersSeeThem) {
    const std::vector<Literal> literals = StringLiterals(
        "// \"OIS\"\n/* \"SatFallback\"\n */ char c = '\"'; auto a = \"a\\\"b\";\n"
        "auto r = R\"x(raw \"q\")x\"; int n = 1'000; auto s = u8\"t\";");
    ASSERT_EQ(3u, literals.size());
    EXPECT_EQ("a\\\"b", literals[0].text);
    EXPECT_EQ(3, literals[0].line);
    EXPECT_EQ("raw \"q\"", literals[1].text);
    EXPECT_EQ("t", literals[2].text);
}

}  // namespace
}  // namespace Lumora
