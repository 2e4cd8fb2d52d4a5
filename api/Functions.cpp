//
// Functions.cpp
//

#include "zuno-keymapmanager/api/Functions.h"

#include <utility>

#include "document/DocumentIO.h"

namespace zunokeymapmanager {

namespace {

KeymapManager& manager() {
    return KeymapManager::GetInstance();
}

}  // namespace

ConfigItem* CreateConfigItem(const std::string& type) {
    return manager().CreateConfigItem(type);
}

KeymapConfig* LoadKeymapConfigAndInfo(const std::string& path, const std::string& data) {
    return manager().LoadKeymapConfigAndInfo(true, path, data);
}

KeymapConfig* LoadKeymapConfigAndInfo(const std::string& path, const std::string& data,
                                      LoadDiagnostic* diagnostic) {
    return manager().LoadKeymapConfigAndInfo(true, path, data, diagnostic);
}

bool SaveKeymapConfigAndInfo(const std::string& path, KeymapConfig* config) {
    return manager().SaveKeymapConfigAndInfo(path, config);
}

std::string SaveKeymapConfigAndInfoToText(const KeymapConfig* config) {
    return config == nullptr ? std::string() : document::Write(*config);
}

KeymapConfig* LoadJoystickConfigAndInfo(const std::string& path, const std::string& data) {
    return manager().LoadJoystickConfigAndInfo(path, data);
}

KeymapConfig* LoadJoystickConfigAndInfo(const std::string& path, const std::string& data,
                                        LoadDiagnostic* diagnostic) {
    return manager().LoadJoystickConfigAndInfo(path, data, diagnostic);
}

bool SaveJoystickConfigAndInfo(const std::string& path, KeymapConfig* config) {
    return manager().SaveKeymapConfigAndInfo(path, config);
}

ConfigKey CreateConfigKey(std::string device, int virtualKey, int scanCode) {
    return manager().SetKeyText(std::move(device), virtualKey, scanCode);
}

void SetTextForConfigKey(ConfigKey* key) {
    manager().SetKeyText(key);
}

bool AllowUsedForConfigKey(const std::string& device, int virtualKey, int scanCode) {
    return manager().AllowUsedForConfigKey(device, virtualKey, scanCode);
}

bool isConfigKeyMatch(KeymapConfig* config, ConfigKey* first, ConfigKey* second) {
    return manager().isConfigKeyMatch(config, first, second);
}

int ModifyKeyboardScanCodeIfNeeded(int scanCode) {
    return manager().ModifyKeyboardScanCodeIfNeeded(scanCode);
}

void SetCallbacks(KeymapManagerCallbacks* callbacks) {
    manager().SetCallbacks(callbacks);
}

std::vector<std::uint32_t> MacroKeyEditingTextGrammarCheck(const std::vector<std::string>& lines) {
    return manager().MacroKeyEditingTextGrammarCheck(lines);
}

std::vector<std::string> MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& lines, Rect rect) {
    return manager().MacroKeyEditingTextChangeToRunningText(lines, rect);
}

std::vector<std::string> MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& lines, Rect rect) {
    return manager().MacroKeyRunningTextChangeToEditingText(lines, rect);
}

}  // namespace zunokeymapmanager
