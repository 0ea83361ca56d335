// Configuration group and key names are written once, in the library's table
// (common/ConfigKeys.h): no C++ source outside uilayer/ may spell one as a
// string ("SatFallback", or "config:SatFallback/..." in a rule). Tests and
// their data are left alone. Keys that are ordinary words ("Mode", "scene",
// ...) cannot be told from unrelated text and are not looked for, nor are the
// keys that share their name with a field of a public record the library fills
// from them (_SatStaticCaps, StarModeAEInfo), which reports name by the field.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "common/ConfigKeys.h"

namespace Lumora {
namespace {

namespace fs = std::filesystem;

// The quoted forms a source may not hold.
std::set<std::string> Spellings() {
    const std::set<std::string> ordinary = {"",
                                            "Mode",
                                            "mode",
                                            "scene",
                                            "App",
                                            "APP",
                                            "Size",
                                            "operationMode",
                                            "supportBokehIzoomSeamless",
                                            "videoMaxRtCount",
                                            "isEnableSkipMiddleSensor",
                                            "expTime"};
    std::set<std::string> spellings;
    for (const _ConfigKey& key : kConfigKeys) {
        spellings.insert('"' + std::string(key.group) + '"');
        spellings.insert("config:" + std::string(key.group) + "/");
        if (ordinary.count(key.key) == 0) {
            spellings.insert('"' + std::string(key.key) + '"');
        }
    }
    return spellings;
}

bool Skipped(const fs::path& relative) {
    for (const fs::path& part : relative) {
        const std::string name = part.string();
        if (name == "uilayer" || name == "tests" || name == "test" || name == "data" ||
            name.rfind("build", 0) == 0 || name[0] == '.') {
            return true;
        }
    }
    return false;
}

TEST(ConfigKeyLiteralsTest, NoGroupOrKeyIsSpelledOutsideTheLibrary) {
    const std::set<std::string> spellings = Spellings();
    const fs::path root = UILAYER_SOURCE_DIR;
    std::vector<std::string> found;
    size_t files = 0;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        const fs::path relative = fs::relative(it->path(), root);
        const std::string extension = it->path().extension().string();
        if (Skipped(relative)) {
            if (it->is_directory()) {
                it.disable_recursion_pending();
            }
        } else if (it->is_regular_file() && (extension == ".cpp" || extension == ".h")) {
            ++files;
            std::ifstream in(it->path());
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            for (const std::string& spelling : spellings) {
                if (text.find(spelling) != std::string::npos) {
                    found.push_back(relative.generic_string() + ": " + spelling);
                }
            }
        }
    }
    EXPECT_GT(files, 50u);
    EXPECT_EQ(std::vector<std::string>{}, found);
}

}  // namespace
}  // namespace Lumora
