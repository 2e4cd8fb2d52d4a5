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
    std::vector<ConfigItem*> items;
    ConfigInfo* info = nullptr;
    ConfigParam* param = nullptr;

    KeymapConfig() = default;
    virtual ~KeymapConfig();

    KeymapConfig(const KeymapConfig&) = delete;
    KeymapConfig& operator=(const KeymapConfig&) = delete;

    /// Whether pressing `first` (with `second` held as the second key of a
    /// combination) triggers any item of the document. An item with a second
    /// key counts only when the whole combination matches; every other item
    /// counts when its key matches `first`. Null keys match nothing.
    bool isConfigKeyMatch(ConfigKey* first, ConfigKey* second);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_KEYMAPCONFIG_H
