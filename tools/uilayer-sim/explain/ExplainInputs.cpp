// The inputs of a capability rule as a replayed session had them, with a
// verdict where the simulator can tell whether the input let the rule set its
// bit. Where it cannot (a stream fact, a list whose meaning depends on the
// rule), the input is shown with its value and no verdict.
#include <HostConfigValues.h>

#include <system/camera_metadata.h>

#include <cstdio>
#include <sstream>

#include "explain/Explain.h"
#include "core/Names.h"
#include "common/VendorTags.h"

namespace UilayerSim {

namespace {

using HostPlatform::ConfigGroup;
using HostPlatform::ConfigKey;
using Lumora::_CapabilityInput;
using Lumora::_CapabilityRule;
using Lumora::ConfigKeyPath;
using Lumora::EConfigKey;
using Lumora::Key;

std::string Hex(uint32_t value) {
    char text[16];
    snprintf(text, sizeof(text), "0x%X", value);
    return text;
}

std::string FloatText(float value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    const size_t last = text.find_last_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::vector<std::string> SplitList(const std::string& text) {
    std::vector<std::string> items;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(',', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        const std::string item = Trim(text.substr(start, end - start));
        if (!item.empty()) {
            items.push_back(item);
        }
        start = end + 1;
    }
    return items;
}

std::string Joined(const std::vector<std::string>& values) {
    std::string text;
    for (const std::string& value : values) {
        text += (text.empty() ? "" : ", ") + value;
    }
    return text;
}

std::string Where(const _InputContext& c, int line) {
    return c.scenario->configName + ":" + std::to_string(line);
}

// The rows of an indexed key ("Mode" of "Mode[i]") in file order.
std::vector<const ConfigKey*> RowsOf(const ConfigGroup& group, const std::string& key) {
    const std::string prefix = key.substr(0, key.find('[')) + "[";
    std::vector<const ConfigKey*> rows;
    for (const ConfigKey& each : group.keys) {
        if (each.name.compare(0, prefix.size(), prefix) == 0) {
            rows.push_back(&each);
        }
    }
    return rows;
}

const TagValue* FindTag(const SessionSetup& setup, bool vendor, uint32_t tag) {
    for (const TagValue& value : setup.params) {
        if (value.vendor == vendor && value.tag == tag) {
            return &value;
        }
    }
    return nullptr;
}

std::string TagText(const TagValue& value) {
    std::vector<std::string> items;
    switch (value.type) {
        case ElementType::Byte: {
            bool text = !value.bytes.empty();
            for (uint8_t byte : value.bytes) {
                text = text && (byte == 0 || (byte >= 0x20 && byte < 0x7F));
            }
            if (text) {
                return "'" +
                       std::string(std::string(value.bytes.begin(), value.bytes.end()).c_str()) +
                       "'";
            }
            for (uint8_t byte : value.bytes) {
                items.push_back(std::to_string(byte));
            }
            break;
        }
        case ElementType::Int32:
            for (int32_t each : value.int32s) {
                items.push_back(std::to_string(each));
            }
            break;
        case ElementType::Int64:
            for (int64_t each : value.int64s) {
                items.push_back(std::to_string(each));
            }
            break;
        case ElementType::Float:
            for (float each : value.floats) {
                items.push_back(FloatText(each));
            }
            break;
        case ElementType::Unknown:
            break;
    }
    return Joined(items);
}

bool AllZero(const TagValue& value) {
    for (uint8_t each : value.bytes) {
        if (each != 0)
            return false;
    }
    for (int32_t each : value.int32s) {
        if (each != 0)
            return false;
    }
    return true;
}

void Fail(_ExplainInput* input, const std::string& reason) {
    input->verdict = InputVerdict::Failed;
    input->reason = reason;
}

bool HasInput(const std::vector<_CapabilityInput>& inputs, Lumora::CapabilityInputKind kind,
              const std::string& value) {
    for (const _CapabilityInput& input : inputs) {
        if (input.kind == kind && input.value == value) {
            return true;
        }
    }
    return false;
}

// A table keyed by operation mode and the set's camera name (EISTypeMatching):
// which row, if any, names this session.
void JudgeNameTable(const ConfigGroup* group, const std::string& groupName, const _InputContext& c,
                    _ExplainInput* input) {
    const std::string& name = c.facts->tableCameraName;
    if (group == nullptr) {
        Fail(input, groupName + ": no such group in " + c.scenario->configName);
        return;
    }
    if (name.empty()) {
        Fail(input, groupName + ": no row names camera name ''; " + TableCameraNameNote(*c.facts));
        return;
    }
    const uint32_t mode = c.facts->raw.operationMode;
    bool modeRow = false;
    for (const ConfigKey* row : RowsOf(*group, Key(EConfigKey::EisTypeMatching).key)) {
        uint32_t rowMode = 0;
        if (row->values.size() < 2 ||
            HostPlatform::ParseUInt32(row->values[0], &rowMode) != HostPlatform::NumberStatus::Ok ||
            rowMode != mode) {
            continue;
        }
        modeRow = true;
        for (size_t i = 1; i < row->values.size(); ++i) {
            if (row->values[i] == name) {
                input->verdict = InputVerdict::Met;
                input->value = "row " + row->name + " names '" + name + "'";
                input->where = Where(c, row->line);
                return;
            }
        }
    }
    Fail(input, groupName + ": no row " + (modeRow ? "for operation mode " + Hex(mode) + " " : "") +
                    "names camera name '" + name + "'" +
                    (modeRow ? "" : " with operation mode " + Hex(mode)));
}

_ExplainInput ConfigInput(const _CapabilityInput& in, const _InputContext& c) {
    _ExplainInput input;
    input.what = "config " + in.value;
    const ConfigGroup* group = c.config->Find(in.group);
    if (group == nullptr) {
        input.value = "absent (no group '" + in.group + "')";
        return input;
    }
    if (in.key.find("[i]") != std::string::npos) {
        const size_t rows = RowsOf(*group, in.key).size();
        input.value = std::to_string(rows) + " row" + (rows == 1 ? "" : "s");
        input.where = Where(c, group->line);
        return input;
    }
    const ConfigKey* key = group->Find(in.key);
    if (key == nullptr) {
        input.value = "absent";
        return input;
    }
    input.value = Joined(key->values);
    input.where = Where(c, key->line);
    return input;
}

std::string PropertyText(const _PropertyValue& property) {
    return property.set ? "'" + property.value + "'"
                        : "unset (the library uses '" + property.defaultValue + "')";
}

_PropertyValue PropertyOf(const std::string& name, const _InputContext& c) {
    const _GsiState& gsi = c.recorded->gsi;
    for (const _PropertyValue* known : {&gsi.brand, &gsi.systemBrand, &gsi.buildProduct}) {
        if (known->name == name) {
            return *known;
        }
    }
    return ReadProperty(name, name == "persist.vendor.camera.3dlut.enable" ? "-1" : "");
}

std::string GsiProperties(const _GsiState& gsi) {
    return "ro.product.brand " + PropertyText(gsi.brand) + ", ro.product.system.brand " +
           PropertyText(gsi.systemBrand) + ", ro.build.product " + PropertyText(gsi.buildProduct);
}

std::string GsiText(const _GsiState& gsi) {
    return std::string(gsi.gsi ? "yes" : "no") + " (" + GsiProperties(gsi) + ")";
}

// The 3D LUT switch: the configuration's, unless the property says otherwise.
void JudgeLut(const _InputContext& c, std::vector<_ExplainInput>* inputs) {
    const ConfigGroup* group = c.config->Find(Key(EConfigKey::Enable3DLut).group);
    const ConfigKey* key =
        group != nullptr ? group->Find(Key(EConfigKey::Enable3DLut).key) : nullptr;
    bool configured = false;
    const bool readable = key != nullptr && !key->values.empty() &&
                          HostPlatform::ParseBoolean(key->values[0], &configured);
    const _PropertyValue property = PropertyOf("persist.vendor.camera.3dlut.enable", c);
    int32_t forced = -1;
    if (property.set &&
        HostPlatform::ParseInt32(property.value, &forced) != HostPlatform::NumberStatus::Ok) {
        forced = 0;
    }
    const bool on = forced != -1 ? forced != 0 : configured;
    _ExplainInput input;
    input.what = "3D LUT switch";
    const std::string configText =
        ConfigKeyPath(EConfigKey::Enable3DLut) + " " +
        (readable ? std::string(configured ? "true" : "false") + " (" + Where(c, key->line) + ")"
                  : std::string("absent (false)"));
    const std::string propertyText = "persist.vendor.camera.3dlut.enable " + PropertyText(property);
    input.value = std::string(on ? "on" : "off") + ": " + configText + ", " + propertyText;
    if (on) {
        input.verdict = InputVerdict::Met;
    } else if (forced != -1) {
        Fail(&input, "3D LUT off: " + propertyText + " overrides " + configText);
    } else {
        Fail(&input, "3D LUT off: " + configText + " and " + propertyText);
    }
    inputs->push_back(input);
}

// OIS close-OCS: a generic system image or a listed client, and the camera
// among the first five ids of the OIS list.
void JudgeCloseOcs(const _InputContext& c, std::vector<_ExplainInput>* inputs) {
    const _GsiState& gsi = c.recorded->gsi;
    _ExplainInput client;
    client.what = "generic system image or OisCloseOcsApp client";
    client.value = "generic system image " + GsiText(gsi) + "; OisCloseOcsApp client " +
                   (c.facts->raw.supportOisCloseOcs != 0 ? "yes" : "no") + " (package '" +
                   c.facts->packageName + "')";
    if (gsi.gsi || c.facts->raw.supportOisCloseOcs != 0) {
        client.verdict = InputVerdict::Met;
    } else {
        Fail(&client, "not a generic system image (" + GsiProperties(gsi) + "), and package '" +
                          c.facts->packageName + "' is not an OisCloseOcsApp client");
    }
    inputs->push_back(client);
}

// The camera's physical id among the first five ids of the OIS list.
void JudgeCloseOcsList(const _InputContext& c, _ExplainInput* input) {
    if (c.camera < 0) {
        return;
    }
    const Lumora::_ConfigKey& list = Key(EConfigKey::OisCtsCloseOcs);
    const ConfigGroup* group = c.config->Find(list.group);
    const ConfigKey* key = group != nullptr ? group->Find(list.key) : nullptr;
    if (key == nullptr) {
        Fail(input, ConfigKeyPath(EConfigKey::OisCtsCloseOcs) + " is absent");
        return;
    }
    for (size_t i = 0; i < key->values.size() && i < Lumora::ReadLimit(EConfigKey::OisCtsCloseOcs);
         ++i) {
        uint32_t id = 0;
        if (HostPlatform::ParseUInt32(key->values[i], &id) == HostPlatform::NumberStatus::Ok &&
            id == c.camera) {
            input->verdict = InputVerdict::Met;
            return;
        }
    }
    Fail(input, "camera " + std::to_string(c.camera) + " is not among the first five ids of " +
                    ConfigKeyPath(EConfigKey::OisCtsCloseOcs));
}

// A device file of the scenario ("%d" stands for the explained camera).
_ExplainInput FileInput(const std::string& pattern, const _InputContext& c) {
    _ExplainInput input;
    std::string path = pattern;
    const size_t slot = path.find("%d");
    if (slot != std::string::npos && c.camera >= 0) {
        path.replace(slot, 2, std::to_string(c.camera));
    }
    input.what = "file " + path;
    input.value = "absent from the scenario";
    for (const auto* files : {&c.scenario->files, &c.setup->files}) {
        for (const auto& file : *files) {
            if (file.first == path) {
                input.value =
                    "written by the scenario (" + std::to_string(file.second.size()) + " bytes)";
            }
        }
    }
    if (slot != std::string::npos && c.camera < 0) {
        input.value = "one per physical camera; explain one with --camera";
    }
    return input;
}

// A setting of the explained request, as the scenario sent it.
_ExplainInput RequestInput(const _CapabilityInput& in, const _InputContext& c) {
    _ExplainInput input;
    const bool vendor = in.kind == Lumora::kInputRequestTag;
    input.what = (vendor ? "request tag " : "request setting ") + in.value;
    if (c.request == nullptr) {
        input.value = "(per request; explain a frame with --frame)";
        return input;
    }
    uint32_t tag = 0;
    const bool known =
        vendor ? HostPlatform::ParseUInt32(in.value, &tag) == HostPlatform::NumberStatus::Ok
               : StandardTagByName(in.value, &tag);
    if (!c.request->hasSettings) {
        input.value = "absent (the request has no settings)";
        return input;
    }
    if (vendor && tag == Lumora::kTagSensorModeList && c.request->hasSensorModes) {
        std::vector<std::string> modes;
        for (int32_t mode : c.request->sensorModes) {
            modes.push_back(std::to_string(mode));
        }
        input.value = Joined(modes);
        return input;
    }
    if (!vendor && tag == ANDROID_CONTROL_ZOOM_RATIO && c.request->hasZoomRatio) {
        input.value = FloatText(c.request->zoomRatio);
        return input;
    }
    input.value = "absent";
    for (const TagValue& value : c.request->settings) {
        if (known && value.vendor == vendor && value.tag == tag) {
            input.value = TagText(value);
        }
    }
    return input;
}

}  // namespace

std::vector<_ExplainInput> EvaluateInputs(const _CapabilityRule& rule, const _InputContext& c) {
    std::vector<_ExplainInput> out;
    if (c.facts == nullptr) {
        return out;
    }
    const bool judge = rule.effect == Lumora::kEffectSets;
    // A condition of alternatives ("..., or ...") may hold without the mode the
    // other alternative names: modes are judged only for single conditions.
    const bool judgeModes = judge && std::string(rule.condition).find(", or ") == std::string::npos;
    const std::vector<_CapabilityInput> inputs = Lumora::ParseInputs(rule);
    const bool nameTable = HasInput(inputs, Lumora::kInputSession, "set camera name");
    const bool gsiRule = HasInput(inputs, Lumora::kInputProperty, "ro.product.brand");
    const bool closeOcsRule = gsiRule && HasInput(inputs, Lumora::kInputConfig,
                                                  ConfigKeyPath(EConfigKey::OisCloseOcsApp));
    const bool lutRule =
        HasInput(inputs, Lumora::kInputProperty, "persist.vendor.camera.3dlut.enable");
    const _RecordedFacts& facts = *c.facts;
    for (const _CapabilityInput& in : inputs) {
        _ExplainInput input;
        input.what = std::string(Lumora::InputKindText(in.kind)) + " " + in.value;
        switch (in.kind) {
            case Lumora::kInputConfig:
                if (lutRule && in.configKey == EConfigKey::Enable3DLut) {
                    JudgeLut(c, &out);
                    continue;
                }
                input = ConfigInput(in, c);
                if (closeOcsRule && judge && in.configKey == EConfigKey::OisCtsCloseOcs) {
                    JudgeCloseOcsList(c, &input);
                }
                if (nameTable && judge && in.key.find("[i]") != std::string::npos) {
                    JudgeNameTable(c.config->Find(in.group), in.group, c, &input);
                }
                break;
            case Lumora::kInputProperty:
                if (gsiRule) {
                    if (in.value != "ro.product.brand") {
                        continue;  // the three properties are one input
                    }
                    if (closeOcsRule && judge) {
                        JudgeCloseOcs(c, &out);
                        continue;
                    }
                    input.what = "generic system image";
                    input.value = GsiText(c.recorded->gsi);
                    break;
                }
                if (lutRule) {
                    continue;  // judged with the configuration switch
                }
                input.value = PropertyText(PropertyOf(in.value, c));
                break;
            case Lumora::kInputSessionTag: {
                uint32_t tag = 0;
                HostPlatform::ParseUInt32(in.value, &tag);
                input.what = "session tag " + in.value;
                if (tag == Lumora::kTagPackageName || tag == Lumora::kTagActivityName) {
                    const bool package = tag == Lumora::kTagPackageName;
                    input.what += package ? " (package)" : " (activity)";
                    const bool has = package ? c.setup->hasPackage : c.setup->hasActivity;
                    input.value = has ? "'" + (package ? c.setup->package : c.setup->activity) + "'"
                                      : "absent";
                    break;
                }
                const TagValue* value = FindTag(*c.setup, true, tag);
                input.value = value != nullptr ? TagText(*value) : "absent";
                if (tag == Lumora::kTagCameraMode) {
                    input.what += " (camera mode)";
                    if (value == nullptr && judge) {
                        Fail(&input, "the client sent no camera mode (session tag 160)");
                    }
                }
                break;
            }
            case Lumora::kInputSessionParam: {
                uint32_t tag = 0;
                const TagValue* value =
                    StandardTagByName(in.value, &tag) ? FindTag(*c.setup, false, tag) : nullptr;
                input.what = "session parameter " + in.value;
                input.value = value != nullptr ? TagText(*value) : "absent";
                if (judge && value == nullptr && inputs.size() == 1) {
                    Fail(&input, in.value + " is absent from the session parameters");
                } else if (judge && value != nullptr && AllZero(*value) &&
                           std::string(rule.condition).find("non-zero") != std::string::npos) {
                    Fail(&input, in.value + " is 0");
                }
                break;
            }
            case Lumora::kInputOperationMode: {
                input.what = "operation mode";
                const uint32_t masked = facts.raw.operationMode;
                const uint32_t raw = c.recorded->configuredOperationMode;
                input.value = Hex(raw) + (raw != masked ? " (masked " + Hex(masked) + ")" : "") +
                              (raw != c.setup->operationMode
                                   ? ", rewritten from " + Hex(c.setup->operationMode)
                                   : "");
                bool any = false;
                bool listed = false;
                for (const std::string& item : SplitList(in.value)) {
                    uint32_t mode = 0;
                    if (HostPlatform::ParseUInt32(item, &mode) == HostPlatform::NumberStatus::Ok) {
                        any = true;
                        listed = listed || mode == masked || mode == raw;
                    }
                }
                if (judgeModes && any) {
                    if (listed) {
                        input.verdict = InputVerdict::Met;
                    } else {
                        Fail(&input, "operation mode " + Hex(masked) + " is not " + in.value);
                    }
                }
                break;
            }
            case Lumora::kInputCameraMode: {
                input.what = "camera mode";
                input.value = "'" + facts.cameraMode + "'";
                bool listed = false;
                for (const std::string& item : SplitList(in.value)) {
                    listed = listed || item == facts.cameraMode;
                }
                if (judgeModes) {
                    if (listed) {
                        input.verdict = InputVerdict::Met;
                    } else {
                        Fail(&input, "camera mode '" + facts.cameraMode + "' is not " + in.value);
                    }
                }
                break;
            }
            case Lumora::kInputCaps: {
                uint32_t bit = 0;
                HostPlatform::ParseUInt32(in.value, &bit);
                const auto& steps = c.recorded->steps;
                const Lumora::_CapsBitset* caps = steps.back().Caps(c.camera);
                if (caps == nullptr || !(Lumora::ScopesOf(bit) & Lumora::kScopeSessionPhysical)) {
                    caps = &steps.back().logical;
                }
                const bool set = bit < Lumora::kCapabilityCount && caps->test(bit);
                input.what = "caps " + CapabilityName(bit) + " (bit " + in.value + ")";
                input.value = set ? "set" : "not set";
                if (judge) {
                    if (set) {
                        input.verdict = InputVerdict::Met;
                    } else {
                        Fail(&input, CapabilityName(bit) + " (bit " + in.value + ") is not set");
                    }
                }
                break;
            }
            case Lumora::kInputSession:
                if (in.value == "set camera name") {
                    input.what = "set camera name";
                    input.value =
                        "'" + facts.tableCameraName + "' (" + TableCameraNameNote(facts) + ")";
                } else if (in.value == "numPhysicalCameras") {
                    input.value = std::to_string(facts.raw.numPhysicalCameras);
                } else if (in.value == "logical camera id") {
                    input.value = std::to_string(facts.raw.logicalCamId);
                } else {
                    input.value = "(not shown)";
                }
                break;
            case Lumora::kInputFile:
                input = FileInput(in.value, c);
                break;
            case Lumora::kInputRequestTag:
            case Lumora::kInputRequestSetting:
                input = RequestInput(in, c);
                break;
            default:
                input.value = "(per stream or request; see the replay report)";
                break;
        }
        out.push_back(input);
    }
    return out;
}

std::vector<_ExplainInput> SessionFactInputs(const _InputContext& c) {
    std::vector<_ExplainInput> out;
    if (c.facts == nullptr) {
        return out;
    }
    const _RecordedFacts& facts = *c.facts;
    const _RecordedSession& session = *c.recorded;
    auto add = [&out](const std::string& what, const std::string& value) {
        _ExplainInput input;
        input.what = what;
        input.value = value;
        out.push_back(input);
    };
    const uint32_t raw = session.configuredOperationMode;
    add("operation mode",
        Hex(raw) + " (masked " + Hex(facts.raw.operationMode) + ")" +
            (raw != c.setup->operationMode ? ", rewritten from " + Hex(c.setup->operationMode)
                                           : ", not rewritten"));
    add("camera mode", "'" + facts.cameraMode + "'");
    add("fps range", std::to_string(facts.raw.minFps) + ".." + std::to_string(facts.raw.maxFps));
    add("client", "package '" + facts.packageName + "', activity '" + facts.activityName + "'");
    add("system camera", facts.raw.isSystemCamera != 0 ? "yes" : "no");
    add("set camera name", "'" + facts.tableCameraName + "' (" + TableCameraNameNote(facts) + ")");
    add("generic system image", GsiText(session.gsi));
    add("wireless charging", std::string(session.wireless.on ? "on" : "off") + " (" +
                                 kWirelessOnlinePath + " " +
                                 (session.wireless.fileRead ? std::to_string(session.wireless.value)
                                                            : std::string("absent")) +
                                 ", " + ConfigKeyPath(EConfigKey::SatFallbackWireless) + " " +
                                 (session.wireless.enabled ? "true" : "false") + ")");
    return out;
}

}  // namespace UilayerSim
