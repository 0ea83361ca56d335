// The capability reference against the library: the names and numbers of
// DesiredSupportCaps, the steps the library runs and the configuration keys,
// properties and camera modes its sources read. Also: configuration group and
// key names are written once, in the library's table (common/ConfigKeys.h),
// and no C++ source outside uilayer/ (tests and their data aside) spells one.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "CapabilityReference.h"
#include "IuiLayer.h"
#include "common/ConfigKeys.h"
#include "common/ConfigurationSteps.h"

namespace {

using namespace Lumora;
namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Every enumerator of DesiredSupportCaps in the public header, by name.
std::map<std::string, uint32_t> HeaderEnumerators() {
    const std::string header = ReadFile(fs::path(UILAYER_SOURCE_DIR) / "include/IuiLayer.h");
    const size_t begin = header.find("enum DesiredSupportCaps");
    const size_t end = header.find("};", begin);
    std::map<std::string, uint32_t> names;
    const std::string body = header.substr(begin, end - begin);
    const std::regex enumerator(R"((Caps\w+)\s*=\s*(\d+))");
    for (auto it = std::sregex_iterator(body.begin(), body.end(), enumerator);
         it != std::sregex_iterator(); ++it) {
        names[(*it)[1]] = static_cast<uint32_t>(std::stoul((*it)[2]));
    }
    return names;
}

// The string literals of the library's sources.
std::set<std::string> LibraryLiterals() {
    std::set<std::string> literals;
    const std::regex literal(R"re("([^"\\]*)")re");
    for (const auto& entry :
         fs::recursive_directory_iterator(fs::path(UILAYER_SOURCE_DIR) / "uilayer")) {
        const std::string text = ReadFile(entry.path());
        for (auto it = std::sregex_iterator(text.begin(), text.end(), literal);
             it != std::sregex_iterator(); ++it) {
            literals.insert((*it)[1]);
        }
    }
    return literals;
}

TEST(CapabilityReferenceTest, NamesAndNumbersAreThoseOfDesiredSupportCaps) {
    const std::map<std::string, uint32_t> enumerators = HeaderEnumerators();
    ASSERT_GE(enumerators.size(), 99u);
    for (const auto& [name, bit] : enumerators) {
        EXPECT_EQ(static_cast<int>(bit), FindCapability(name)) << name;
    }
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
        const _Capability& capability = Capabilities()[bit];
        EXPECT_EQ(bit, capability.bit);
        for (const char* name : {capability.name, capability.otherName}) {
            if (name != nullptr) {
                EXPECT_EQ(1u, enumerators.count(name)) << bit << " " << name;
            }
        }
    }
    EXPECT_EQ(-1, FindCapability("CapsNoSuchThing"));
}

TEST(CapabilityReferenceTest, EveryNamedBitButTheReservedOnesHasARuleInOrder) {
    uint32_t previous = 0;
    for (size_t i = 0; i < CapabilityRuleCount(); ++i) {
        const _CapabilityRule& rule = CapabilityRules()[i];
        ASSERT_LT(rule.bit, kCapabilityCount);
        EXPECT_GE(rule.bit, previous) << "rules are ordered by bit";
        previous = rule.bit;
        EXPECT_NE(0u, rule.scope) << rule.bit;
        EXPECT_NE(nullptr, Capabilities()[rule.bit].name) << rule.bit;
    }
    for (uint32_t bit = 0; bit < kCapabilityCount; ++bit) {
        const bool reserved = bit == CapsReserved24 || bit == CapsReserved33;
        if (Capabilities()[bit].name != nullptr && !reserved) {
            EXPECT_FALSE(RulesOf(bit).empty()) << bit;
        } else {
            EXPECT_TRUE(RulesOf(bit).empty()) << bit;
        }
    }
    // Scopes are the union of the rules': the stream roles live on both sides.
    EXPECT_EQ(kScopeSessionLogical | kScopeRequestLogical | kScopeRequestPhysical,
              ScopesOf(CapsStreamPreview));
    EXPECT_EQ(kScopeSessionPhysical | kScopeRequestLogical | kScopeRequestPhysical,
              ScopesOf(Caps4x4Izoom));
}

TEST(CapabilityReferenceTest, RulesNameTheLibrarysStepsAndWhatItReads) {
    std::set<std::string> steps(std::begin(kConfigStepNames), std::end(kConfigStepNames));
    steps.insert({"InitPackageName", "UpdatePerRequestCaps", "ParseOriginalRequestSetting"});
    const std::set<std::string> literals = LibraryLiterals();
    for (size_t i = 0; i < CapabilityRuleCount(); ++i) {
        const _CapabilityRule& rule = CapabilityRules()[i];
        EXPECT_EQ(1u, steps.count(rule.step)) << rule.bit << " " << rule.step;
        // Every configuration input names a key of the library's table.
        const std::string text = rule.inputs;
        size_t configItems = 0;
        for (size_t at = text.find("config:"); at != std::string::npos;
             at = text.find("config:", at + 1)) {
            ++configItems;
        }
        for (const _CapabilityInput& input : ParseInputs(rule)) {
            switch (input.kind) {
                case kInputConfig:
                    --configItems;
                    break;
                case kInputProperty:
                    EXPECT_EQ(1u, literals.count(input.value)) << rule.bit << " " << input.value;
                    break;
                case kInputCameraMode: {
                    std::stringstream modes(input.value);
                    std::string mode;
                    while (std::getline(modes >> std::ws, mode, ',')) {
                        EXPECT_EQ(1u, literals.count(mode)) << rule.bit << " " << mode;
                    }
                    break;
                }
                default:
                    break;
            }
        }
        EXPECT_EQ(0u, configItems) << rule.bit << " " << rule.inputs;
    }
}

// Keys that are ordinary words ("Mode", "scene", ...) cannot be told from
// unrelated text and are not looked for, nor are the keys that share their
// name with a field of a public record the library fills from them
// (_SatStaticCaps, StarModeAEInfo), which reports name by the field.
TEST(ConfigKeyLiteralsTest, NoGroupOrKeyIsSpelledOutsideTheLibrary) {
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
        spellings.insert(
            {'"' + std::string(key.group) + '"', "config:" + std::string(key.group) + "/"});
        if (ordinary.count(key.key) == 0) {
            spellings.insert('"' + std::string(key.key) + '"');
        }
    }
    const fs::path root = UILAYER_SOURCE_DIR;
    std::vector<std::string> found;
    size_t files = 0;
    for (auto it = fs::recursive_directory_iterator(root); it != fs::recursive_directory_iterator();
         ++it) {
        const std::string name = it->path().filename().string();
        const std::string extension = it->path().extension().string();
        if (it->is_directory() &&
            (name == "uilayer" || name == "tests" || name == "test" || name == "data" ||
             name.rfind("build", 0) == 0 || name[0] == '.')) {
            it.disable_recursion_pending();
        } else if (it->is_regular_file() && (extension == ".cpp" || extension == ".h")) {
            ++files;
            const std::string text = ReadFile(it->path());
            for (const std::string& spelling : spellings) {
                if (text.find(spelling) != std::string::npos) {
                    found.push_back(fs::relative(it->path(), root).generic_string() + ": " +
                                    spelling);
                }
            }
        }
    }
    EXPECT_GT(files, 50u);
    EXPECT_EQ(std::vector<std::string>{}, found);
}

}  // namespace
