// The facts a report shows that no query of the library returns: the
// generic system image state from three properties (with the library's
// defaults for unset ones) and the wireless charging state.
#include <HostPlatform.h>
#include <cutils/properties.h>
#include <gtest/gtest.h>

#include "replay/SessionFacts.h"

namespace UilayerSim {
namespace {

TEST(SessionFactsTest, GenericSystemImageFromAnyOfThreeProperties) {
    const struct {
        const char* brand;  // null: unset
        const char* systemBrand;
        const char* product;
        bool gsi;
    } cases[] = {
        {"lumora", "lumora", "lumora_phone", false},
        {"Android", "lumora", "lumora_phone", true},
        {"lumora", "AndroidOne", "lumora_phone", true},
        {"lumora", "lumora", "generic_arm64", true},
        {"android", "lumora", "Generic", false},    // prefixes match case and all
        {nullptr, "lumora", "lumora_phone", true},  // brand defaults to "Android"
        {"lumora", nullptr, nullptr, true},         // product defaults to "generic"
    };
    for (const auto& c : cases) {
        HostPlatform::ResetProperties();
        const std::pair<const char*, const char*> properties[] = {
            {"ro.product.brand", c.brand},
            {"ro.product.system.brand", c.systemBrand},
            {"ro.build.product", c.product}};
        for (const auto& property : properties) {
            if (property.second != nullptr) {
                property_set(property.first, property.second);
            }
        }
        const _GsiState state = ReadGsiState();
        EXPECT_EQ(c.gsi, state.gsi)
            << (c.brand ? c.brand : "-") << " " << (c.systemBrand ? c.systemBrand : "-") << " "
            << (c.product ? c.product : "-");
        EXPECT_EQ(c.brand != nullptr, state.brand.set);
        EXPECT_EQ(c.brand != nullptr ? c.brand : "Android", state.brand.value);
    }
    HostPlatform::ResetProperties();
}

TEST(SessionFactsTest, WirelessChargingNeedsTheFileAtOneAndTheSwitch) {
    const struct {
        const char* file;  // null: no such device file
        const char* switchText;
        bool on;
    } cases[] = {
        {"1\n", "true", true},    {"1\n", "TRUE", true},    {"1", "1", true},
        {"1\n", "false", false},  {"1\n", "", false},       {"0\n", "true", false},
        {"10\n", "true", false},  {"00001", "true", false},  // only four bytes are read
        {nullptr, "true", false},
    };
    for (const auto& c : cases) {
        std::map<std::string, std::string> files;
        if (c.file != nullptr) {
            files[kWirelessOnlinePath] = c.file;
        }
        const _WirelessState state = WirelessStateOf(files, c.switchText);
        EXPECT_EQ(c.on, state.on) << (c.file ? c.file : "-") << " " << c.switchText;
        EXPECT_EQ(c.file != nullptr, state.fileRead);
    }
}

}  // namespace
}  // namespace UilayerSim
