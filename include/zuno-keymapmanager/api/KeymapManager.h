//
// KeymapManager.h
//
// The process-wide object behind the library's free functions.
//

#ifndef ZUNO_KEYMAPMANAGER_API_KEYMAPMANAGER_H
#define ZUNO_KEYMAPMANAGER_API_KEYMAPMANAGER_H

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"

struct KeymapManagerCallbacks
/// Functions the host lends the library. The host keeps the structure alive
/// for as long as loads can happen. While loads may run on other threads,
/// the host does not change its members: it passes a new structure to
/// SetCallbacks instead, which is safe at any time from any thread (a load
/// already failing may still call the old function).
{
    /// Called once for every load that fails, with the path (or built-in name)
    /// that was being loaded. It runs on a thread of its own while the loading
    /// thread waits for it to return; where the platform has no threads (a
    /// WebAssembly build without them, as in a web page), it runs on the
    /// loading thread itself, before the load returns.
    void (*loadConfigAndInfoFailed)(const std::string& path);
};

class ZUNO_KM_API KeymapManager
/// A thin facade over the document reader and writer, the item factory,
/// the key captions and the macro language. It owns no document and keeps
/// no cache; its only state is the host's callbacks pointer, which may be
/// replaced from any thread at any time.
{
public:
    /// The one manager the free functions of api/Functions.h use.
    static KeymapManager& GetInstance();

    KeymapManager();
    ~KeymapManager();

    KeymapManager(const KeymapManager&) = delete;
    KeymapManager& operator=(const KeymapManager&) = delete;

    /// Stores the pointer, not a copy; null silences the callbacks.
    void SetCallbacks(KeymapManagerCallbacks* callbacks);

    /// The text a load parses: the built-in document named `path` if there is
    /// one (keymap or gamepad table after `isKeymap`), else `data`.
    const std::string& GetDataString(bool isKeymap, const std::string& path,
                                     const std::string& data);

    /// Loads a document from the built-in name `path`, else from `data`, else
    /// from the file `path`. Never null; the caller owns the result. A failed
    /// load calls the failure callback with `path` and still returns what was
    /// read before the failure, the rest at its defaults.
    zunokeymapmanager::KeymapConfig* LoadKeymapConfigAndInfo(bool isKeymap, const std::string& path,
                                                             const std::string& data);

    /// As LoadKeymapConfigAndInfo on the gamepad table; the result is always
    /// marked as a gamepad document.
    zunokeymapmanager::KeymapConfig* LoadJoystickConfigAndInfo(const std::string& path,
                                                               const std::string& data);

    /// As the loads above, and, when `diagnostic` is not null, says in it why
    /// the load failed (or that it did not). The document returned and the
    /// callback made are the same as without it.
    zunokeymapmanager::KeymapConfig* LoadKeymapConfigAndInfo(
        bool isKeymap, const std::string& path, const std::string& data,
        zunokeymapmanager::LoadDiagnostic* diagnostic);
    /// As LoadJoystickConfigAndInfo, and fills `diagnostic` as above.
    zunokeymapmanager::KeymapConfig* LoadJoystickConfigAndInfo(
        const std::string& path, const std::string& data,
        zunokeymapmanager::LoadDiagnostic* diagnostic);

    /// Writes the document with sorted keys and an indentation of 4. Always
    /// returns true, even when the file could not be written.
    bool SaveKeymapConfigAndInfo(const std::string& path, zunokeymapmanager::KeymapConfig* config);

    /// Calls the host's failure callback, if one is registered.
    void OnLoadConfigAndInfoFailed(const std::string& path);

    /// As ConfigFactory::ProduceConfigItem: a new item of `type`, or null.
    zunokeymapmanager::ConfigItem* CreateConfigItem(const std::string& type);

    /// Folds right-hand modifiers, then recomputes the caption. Null is ignored.
    void SetKeyText(zunokeymapmanager::ConfigKey* key);

    /// A new key for `device` with the given codes, modifiers folded; the
    /// caption comes from `scanCode` as passed in, not from the folded code.
    zunokeymapmanager::ConfigKey SetKeyText(std::string device, int virtualKey, int scanCode);

    /// Always true: no key is refused.
    bool AllowUsedForConfigKey(const std::string& device, int virtualKey, int scanCode);

    /// As KeymapConfig::isConfigKeyMatch on `config`; false for a null document.
    bool isConfigKeyMatch(zunokeymapmanager::KeymapConfig* config,
                          zunokeymapmanager::ConfigKey* first,
                          zunokeymapmanager::ConfigKey* second);

    /// 312 becomes 56, 285 becomes 29, 54 becomes 42; every other code is kept.
    int ModifyKeyboardScanCodeIfNeeded(int scanCode);

    /// The one-based numbers of the lines no macro command accepts.
    std::vector<std::uint32_t> MacroKeyEditingTextGrammarCheck(
        const std::vector<std::string>& lines);
    /// The editing lines in running form; a line no command accepts gives no
    /// output line.
    std::vector<std::string> MacroKeyEditingTextChangeToRunningText(
        const std::vector<std::string>& lines, zunokeymapmanager::Rect rect);
    /// The running lines in editing form; a line no command accepts gives no
    /// output line.
    std::vector<std::string> MacroKeyRunningTextChangeToEditingText(
        const std::vector<std::string>& lines, zunokeymapmanager::Rect rect);

private:
    std::map<std::string, std::vector<zunokeymapmanager::ConfigItem*>> items_;
    std::atomic<KeymapManagerCallbacks*> callbacks_{nullptr};
};

#endif  // ZUNO_KEYMAPMANAGER_API_KEYMAPMANAGER_H
