//
// KeymapConfig.h
//
// The in-memory keymap document.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_KEYMAPCONFIG_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_KEYMAPCONFIG_H

#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/document/ConfigInfo.h"
#include "zuno-keymapmanager/document/ConfigParam.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {

class ZUNO_KM_API KeymapConfig
/// A keymap: its items in document order, its info and its parameters.
/// The document owns all three and deletes them with itself; null entries
/// in `items` are allowed and skipped.
{
public:
    std::vector<ConfigItem*> items;  ///< the "keymaps" array, in document order
    ConfigInfo* info = nullptr;      ///< the "info" object
    ConfigParam* param = nullptr;    ///< the "param" object

    KeymapConfig() = default;
    virtual ~KeymapConfig();

    KeymapConfig(const KeymapConfig&) = delete;
    KeymapConfig& operator=(const KeymapConfig&) = delete;

    /// Whether pressing `first` (with `second` as the second key of a
    /// combination) triggers any item of the document. Items that may take a
    /// second key (ComposableConfigItem and its descendants) count only when
    /// their key matches `first` and their second key matches `second`, so a
    /// single key is asked about by passing an unset key, or null, as
    /// `second`. Every other item counts when its key matches `first`. Every
    /// item is asked, so pair items all record their matched direction. A
    /// null `first` matches nothing.
    bool isConfigKeyMatch(ConfigKey* first, ConfigKey* second);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_KEYMAPCONFIG_H
