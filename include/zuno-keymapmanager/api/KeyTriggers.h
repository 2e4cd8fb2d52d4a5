//
// KeyTriggers.h
//
// The keys and key combinations that fire an item, described the way people
// read them. The document check finds collisions with these; tools list them.
//

#ifndef ZUNO_KEYMAPMANAGER_API_KEYTRIGGERS_H
#define ZUNO_KEYMAPMANAGER_API_KEYTRIGGERS_H

#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {

/// A key that fires an item: one key, or a combination of two.
struct ZUNO_KM_API KeyTrigger {
    ConfigKey first;           ///< the key, or the first of a combination
    ConfigKey second;          ///< the second key of a combination, else unset
    bool combination = false;  ///< whether `second` takes part
    /// Which of the item's keys: "key", "top", "right", "bottom", "left",
    /// "positive" or "negative".
    std::string role;
};

/// Every key or combination that fires `item`, only keys that are set: the
/// key with its second key, the four direction keys, or the pair's two keys.
ZUNO_KM_API std::vector<KeyTrigger> KeyTriggersOf(const ConfigItem& item);

/// Whether `trigger` fires `item`, by the item's own match rules: a
/// combination through MatchComposableConfigKey, a single key through
/// MatchConfigKey.
ZUNO_KM_API bool TriggerFires(ConfigItem& item, const KeyTrigger& trigger);

/// A key as people read it: its caption, else device and code; "-" when unset.
ZUNO_KM_API std::string DescribeConfigKey(const ConfigKey& key);

/// Whether `key` is a keyboard modifier: Ctrl, Shift, Alt or the Windows
/// key, of either side.
ZUNO_KM_API bool IsModifierKey(const ConfigKey& key);

/// The keys of a combination in the order people say them: a modifier before
/// the key it modifies ("Ctrl+G" whichever of the two is the item's first
/// key), otherwise `first` then `second`. Just `first` when `second` is unset.
ZUNO_KM_API std::vector<const ConfigKey*> KeysInReadingOrder(const ConfigKey& first,
                                                             const ConfigKey& second);

/// "Q", or "Ctrl+Q" for a combination, in reading order.
ZUNO_KM_API std::string DescribeKeyTrigger(const KeyTrigger& trigger);

/// Why `item` is invalid ("no key is assigned", ...), or empty when it is valid.
ZUNO_KM_API std::string WhyItemInvalid(const ConfigItem& item);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_KEYTRIGGERS_H
