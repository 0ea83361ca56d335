#include "replay/SessionFacts.h"

#include <HostConfigValues.h>
#include <cutils/properties.h>

#include <cstdlib>

#include "common/ConfigKeys.h"
#include "core/TraceRecorder.h"

namespace UilayerSim {

const char* const kWirelessOnlinePath = "/sys/class/power_supply/wireless/online";

namespace {

bool StartsWith(const std::string& text, const char* prefix) {
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

std::string PropertyText(const _PropertyValue& property) {
    return property.name + " " +
           (property.set ? "'" + property.value + "'"
                         : "unset (default '" + property.defaultValue + "')");
}

ReportNode Flag(uint32_t value) {
    return ReportNode::Boolean(value != 0);
}

}  // namespace

_PropertyValue ReadProperty(const std::string& name, const std::string& defaultValue) {
    _PropertyValue property;
    property.name = name;
    property.defaultValue = defaultValue;
    char value[PROPERTY_VALUE_MAX] = {};
    property.set = property_get(name.c_str(), value, nullptr) > 0;
    property.value = property.set ? value : defaultValue;
    return property;
}

_GsiState ReadGsiState() {
    _GsiState state;
    state.brand = ReadProperty("ro.product.brand", "Android");
    state.systemBrand = ReadProperty("ro.product.system.brand", "");
    state.buildProduct = ReadProperty("ro.build.product", "generic");
    state.gsi = StartsWith(state.brand.value, "Android") ||
                StartsWith(state.systemBrand.value, "Android") ||
                StartsWith(state.buildProduct.value, "generic");
    return state;
}

_WirelessState WirelessStateOf(const std::map<std::string, std::string>& files,
                               const std::string& switchText) {
    _WirelessState state;
    const auto file = files.find(kWirelessOnlinePath);
    state.fileRead = file != files.end();
    if (state.fileRead) {
        // The library reads at most four bytes.
        state.value = atoi(file->second.substr(0, 4).c_str());
    }
    bool enabled = false;
    state.enabled = HostPlatform::ParseBoolean(switchText, &enabled) && enabled;
    state.on = state.fileRead && state.value == 1 && state.enabled;
    return state;
}

std::string TableCameraNameNote(const _RecordedFacts& facts) {
    if (facts.raw.logicalCamId < 0) {
        return "the camera has no record, so no set name";
    }
    const uint32_t count = facts.raw.numPhysicalCameras;
    if (!facts.tableCameraName.empty()) {
        return count == 1 ? "the sensor name of the set's one camera"
                          : "the name of a set of " + std::to_string(count) + " cameras";
    }
    return "a set of " + std::to_string(count) + " cameras has no set name";
}

ReportNode FactsNode(const _RecordedSession& session, uint32_t requestedMode) {
    const _GsiState& gsi = session.gsi;
    const _WirelessState& wireless = session.wireless;
    if (session.steps.empty()) {
        return ReportNode::Text("no configuration step ran");
    }
    const _RecordedFacts& facts = session.steps.back().facts;
    const Lumora::Trace::_SessionFacts& raw = facts.raw;
    ReportNode node = ReportNode::Map();
    node.Add("masked operation mode", ReportNode::Hex(raw.operationMode));
    node.Add("operation mode rewritten",
             ReportNode::Boolean(requestedMode != session.configuredOperationMode));
    node.Add("fps range",
             ReportNode::Text(std::to_string(raw.minFps) + ".." + std::to_string(raw.maxFps)))
        .WithJson([&] {
            ReportNode range = ReportNode::Map();
            range.Add("min", ReportNode::Integer(raw.minFps));
            range.Add("max", ReportNode::Integer(raw.maxFps));
            return range;
        }());
    node.Add("logical camera id", ReportNode::Integer(raw.logicalCamId));
    node.Add("physical cameras", ReportNode::Integer(raw.numPhysicalCameras));
    ReportNode& name = node.Add(
        "set camera name",
        ReportNode::Text("'" + facts.tableCameraName + "' (" + TableCameraNameNote(facts) + ")"));
    name.WithJson(ReportNode::Text(facts.tableCameraName));
    node.Add("system camera", Flag(raw.isSystemCamera));
    node.Add("camera unit", Flag(raw.isCameraUnit));
    node.Add("engineer camera", Flag(raw.isEngineerCamera));
    node.Add("CTS camera", Flag(raw.isCtsCamera));
    node.Add("CTS verifier", Flag(raw.isCtsVerifier));
    node.Add("scan mode", Flag(raw.isScanMode));
    node.Add("OIS centre on client", Flag(raw.supportOisCenterOn));
    node.Add("OIS close OCS client", Flag(raw.supportOisCloseOcs));
    ReportNode gsiJson = ReportNode::Map();
    gsiJson.Add("gsi", Flag(raw.isGSIBuild));
    for (const _PropertyValue* property : {&gsi.brand, &gsi.systemBrand, &gsi.buildProduct}) {
        gsiJson.Add(property->name,
                    property->set ? ReportNode::Text(property->value) : ReportNode());
    }
    node.Add("generic system image",
             ReportNode::Text(std::string(raw.isGSIBuild != 0 ? "yes" : "no") + " (" +
                              PropertyText(gsi.brand) + ", " + PropertyText(gsi.systemBrand) +
                              ", " + PropertyText(gsi.buildProduct) + ")"))
        .WithJson(gsiJson);
    ReportNode wirelessJson = ReportNode::Map();
    wirelessJson.Add("on", ReportNode::Boolean(wireless.on));
    wirelessJson.Add("file",
                     wireless.fileRead ? ReportNode::Integer(wireless.value) : ReportNode());
    wirelessJson.Add("enabled", ReportNode::Boolean(wireless.enabled));
    const Lumora::_ConfigKey& wirelessSwitch = Lumora::Key(Lumora::EConfigKey::SatFallbackWireless);
    node.Add(
            "wireless charging",
            ReportNode::Text(std::string(wireless.on ? "on" : "off") + " (" + kWirelessOnlinePath +
                             " " + (wireless.fileRead ? std::to_string(wireless.value) : "absent") +
                             ", " + wirelessSwitch.group + "/" + wirelessSwitch.key + " " +
                             (wireless.enabled ? "true" : "false") + ")"))
        .WithJson(wirelessJson);
    node.Add("bokeh mode", Flag(raw.isBokehMode));
    node.Add("AI composition", Flag(raw.isAICompositionEnable));
    node.Add("from main menu", Flag(raw.cameraIsFromMainMenu));
    node.Add("ext mode stream", Flag(raw.hasExtModeStream));
    return node;
}

}  // namespace UilayerSim
