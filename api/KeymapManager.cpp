//
// KeymapManager.cpp
//

#include "zuno-keymapmanager/api/KeymapManager.h"

#include <future>
#include <memory>
#include <utility>

#include <Poco/Exception.h>

#include "document/DocumentIO.h"
#include "document/FileSystem.h"
#include "zuno-keymapmanager/macro/MarcoConVerterManager.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"

using zunokeymapmanager::ConfigItem;
using zunokeymapmanager::ConfigKey;
using zunokeymapmanager::KeymapConfig;
using zunokeymapmanager::Rect;

KeymapManager& KeymapManager::GetInstance() {
    static KeymapManager keymap_manager;
    return keymap_manager;
}

KeymapManager::KeymapManager() = default;

KeymapManager::~KeymapManager() = default;

void KeymapManager::SetCallbacks(KeymapManagerCallbacks* callbacks) {
    callbacks_.store(callbacks, std::memory_order_release);
}

const std::string& KeymapManager::GetDataString(bool isKeymap, const std::string& path,
                                                const std::string& data) {
    const std::string* builtIn = zunokeymapmanager::document::BuiltInText(path, !isKeymap);
    return builtIn != nullptr ? *builtIn : data;
}

KeymapConfig* KeymapManager::LoadKeymapConfigAndInfo(bool isKeymap, const std::string& path,
                                                     const std::string& data) {
    return LoadKeymapConfigAndInfo(isKeymap, path, data, nullptr);
}

KeymapConfig* KeymapManager::LoadJoystickConfigAndInfo(const std::string& path,
                                                       const std::string& data) {
    return LoadJoystickConfigAndInfo(path, data, nullptr);
}

KeymapConfig* KeymapManager::LoadKeymapConfigAndInfo(
    bool isKeymap, const std::string& path, const std::string& data,
    zunokeymapmanager::LoadDiagnostic* diagnostic) {
    namespace document = zunokeymapmanager::document;
    const std::string text = GetDataString(isKeymap, path, data);
    // Empty text means the file at the path: the host's rule, kept here alone.
    zunokeymapmanager::LoadDiagnostic result;
    std::unique_ptr<KeymapConfig> config = document::Load(
        text.empty() ? document::Origin::File : document::Origin::Text, text, path, false, result);
    if (diagnostic != nullptr) {
        *diagnostic = result;
    }
    if (result.failed) {
        // The callback runs on a thread of its own, and has returned before
        // the load does. A platform without threads (a page's WebAssembly)
        // would wait forever for one: there it runs on this thread.
#if defined(__EMSCRIPTEN__) && !defined(__EMSCRIPTEN_PTHREADS__)
        OnLoadConfigAndInfoFailed(path);
#else
        std::async(std::launch::async, &KeymapManager::OnLoadConfigAndInfoFailed, this,
                   std::string(path))
            .wait();
#endif
    }
    return config.release();
}

KeymapConfig* KeymapManager::LoadJoystickConfigAndInfo(
    const std::string& path, const std::string& data,
    zunokeymapmanager::LoadDiagnostic* diagnostic) {
    KeymapConfig* config = LoadKeymapConfigAndInfo(false, path, data, diagnostic);
    config->info->is_joystick = true;
    return config;
}

bool KeymapManager::SaveKeymapConfigAndInfo(const std::string& path, KeymapConfig* config) {
    if (config != nullptr) {
        zunokeymapmanager::document::WriteFile(path, zunokeymapmanager::document::Write(*config));
    }
    return true;
}

void KeymapManager::OnLoadConfigAndInfoFailed(const std::string& path) {
    // The pointer and the function are each read once: what is checked is
    // what is called.
    KeymapManagerCallbacks* callbacks = callbacks_.load(std::memory_order_acquire);
    void (*failed)(const std::string&) =
        callbacks != nullptr ? callbacks->loadConfigAndInfoFailed : nullptr;
    if (failed != nullptr) {
        failed(path);
    }
}

ConfigItem* KeymapManager::CreateConfigItem(const std::string& type) {
    return zunokeymapmanager::ConfigFactory::ProduceConfigItem(type);
}

void KeymapManager::SetKeyText(ConfigKey* key) {
    if (key == nullptr) {
        return;
    }
    key->modifySpecialKey();
    key->setText();
}

ConfigKey KeymapManager::SetKeyText(std::string device, int virtualKey, int scanCode) {
    ConfigKey key;
    key.device = device;
    key.virtual_key = virtualKey;
    key.scan_code = scanCode;
    key.modifySpecialKey();
    key.setText(std::move(device), scanCode);
    return key;
}

bool KeymapManager::AllowUsedForConfigKey(const std::string& /*device*/, int /*virtualKey*/,
                                          int /*scanCode*/) {
    return true;
}

bool KeymapManager::isConfigKeyMatch(KeymapConfig* config, ConfigKey* first, ConfigKey* second) {
    return config != nullptr && config->isConfigKeyMatch(first, second);
}

int KeymapManager::ModifyKeyboardScanCodeIfNeeded(int scanCode) {
    ConfigKey key("", "", zunokeymapmanager::kUnsetKeyCode, scanCode);
    key.modifySpecialKey();
    return key.scan_code;
}

std::vector<std::uint32_t> KeymapManager::MacroKeyEditingTextGrammarCheck(
    const std::vector<std::string>& lines) {
    return zunokeymapmanager::MarcoConVerterManager::MacroKeyEditingTextGrammarCheck(lines);
}

std::vector<std::string> KeymapManager::MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& lines, Rect rect) {
    return zunokeymapmanager::MarcoConVerterManager::MacroKeyEditingTextChangeToRunningText(lines,
                                                                                            rect);
}

std::vector<std::string> KeymapManager::MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& lines, Rect rect) {
    return zunokeymapmanager::MarcoConVerterManager::MacroKeyRunningTextChangeToEditingText(lines,
                                                                                            rect);
}
