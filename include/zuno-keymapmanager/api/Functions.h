//
// Functions.h
//
// The library's free functions. Each one makes exactly one call on
// KeymapManager::GetInstance().
//

#ifndef ZUNO_KEYMAPMANAGER_API_FUNCTIONS_H
#define ZUNO_KEYMAPMANAGER_API_FUNCTIONS_H

#include <cstdint>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/api/KeymapManager.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

/// A new item of `type` ("Click", "Swipehold", ...) with all defaults, or null
/// for an unknown type. The caller owns it.
ZUNO_KM_API ConfigItem* CreateConfigItem(const std::string& type);

/// Loads a keymap: the built-in document named `path`, else the JSON text
/// `data`, else the file at `path`. Never null; the caller deletes the result.
/// On failure the host's callback receives `path`, and the result holds what
/// was read before the failure.
///
/// The callback runs on a thread the load starts and waits for (where the
/// platform has no threads, such as WebAssembly built without them for a web
/// page, on the loading thread itself). When the system
/// cannot start that thread, the load throws `std::system_error`; a host that
/// loads documents from untrusted sources under tight process limits catches
/// it.
ZUNO_KM_API KeymapConfig* LoadKeymapConfigAndInfo(const std::string& path, const std::string& data);

/// As LoadKeymapConfigAndInfo above (same document, same callback), and, when
/// `diagnostic` is not null, fills it: whether the load failed, and if so
/// where (a JSON path such as "keymaps[3].swipehold_info.steps", or a line
/// and column of malformed JSON), in which item, and what was wrong.
ZUNO_KM_API KeymapConfig* LoadKeymapConfigAndInfo(const std::string& path, const std::string& data,
                                                  LoadDiagnostic* diagnostic);

/// Writes the document to `path`. Always true.
///
/// What a host can rely on: the text goes to a new file beside `path`, which
/// is flushed to disk and then replaces the target in one step, so a crash,
/// a kill or a full disk midway leaves the old file whole, and a symbolic
/// link stays a link (its target is replaced; hard links to the old file keep
/// the old text). Temporary files left beside the target by a save that was
/// killed are removed by the next save of the same target.
///
/// What it cannot promise: where no new file can be made beside the target
/// (a folder the user may not write, no free inodes) or the target is a pipe
/// or device, the text is written into the target itself. The room it needs
/// is reserved first, so a full disk fails before any old byte is touched,
/// but a kill midway can then leave a mix of old and new text. Since the
/// result is always true, a host that must know whether the document landed
/// saves with SaveKeymapConfigAndInfoToText and WriteTextFile, which never
/// writes in place and reports failure.
ZUNO_KM_API bool SaveKeymapConfigAndInfo(const std::string& path, KeymapConfig* config);

/// The text SaveKeymapConfigAndInfo writes for `config`, byte for byte;
/// empty for null.
ZUNO_KM_API std::string SaveKeymapConfigAndInfoToText(const KeymapConfig* config);

/// Loads a gamepad keymap, as LoadKeymapConfigAndInfo on the gamepad
/// built-ins; the result is always marked as a gamepad document.
ZUNO_KM_API KeymapConfig* LoadJoystickConfigAndInfo(const std::string& path,
                                                    const std::string& data);

/// As LoadJoystickConfigAndInfo above, filling `diagnostic` when not null.
ZUNO_KM_API KeymapConfig* LoadJoystickConfigAndInfo(const std::string& path,
                                                    const std::string& data,
                                                    LoadDiagnostic* diagnostic);

/// The same writer as SaveKeymapConfigAndInfo. Always true.
ZUNO_KM_API bool SaveJoystickConfigAndInfo(const std::string& path, KeymapConfig* config);

/// A key for `device` ("keyboard", "mouse", "joystick") with its caption.
ZUNO_KM_API ConfigKey CreateConfigKey(std::string device, int virtualKey, int scanCode);

/// Folds right-hand modifiers and recomputes the caption; null is ignored.
ZUNO_KM_API void SetTextForConfigKey(ConfigKey* key);

/// Always true.
ZUNO_KM_API bool AllowUsedForConfigKey(const std::string& device, int virtualKey, int scanCode);

/// Whether the key (or the combination `first` + `second`) triggers an item of
/// `config`.
ZUNO_KM_API bool isConfigKeyMatch(KeymapConfig* config, ConfigKey* first, ConfigKey* second);

/// Folds right Alt (312), right Ctrl (285) and right Shift (54) onto their
/// left-hand twins; every other code is returned unchanged.
ZUNO_KM_API int ModifyKeyboardScanCodeIfNeeded(int scanCode);

/// Registers the host's callbacks (the pointer is kept, not a copy); null
/// silences them. Safe to call from any thread at any time.
ZUNO_KM_API void SetCallbacks(KeymapManagerCallbacks* callbacks);

/// The one-based numbers of the lines of an editing script that no command
/// accepts; empty lines and the "release_actions" separator are skipped.
ZUNO_KM_API std::vector<std::uint32_t> MacroKeyEditingTextGrammarCheck(
    const std::vector<std::string>& lines);

/// Converts an editing script to running text, dropping the separator, empty
/// lines and lines no command accepts.
ZUNO_KM_API std::vector<std::string> MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& lines, Rect rect);

/// Converts a running script to editing text, dropping the separator, empty
/// lines and lines no command accepts.
ZUNO_KM_API std::vector<std::string> MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& lines, Rect rect);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_FUNCTIONS_H
