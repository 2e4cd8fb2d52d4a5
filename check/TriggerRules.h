//
// TriggerRules.h
//
// Which keys fire an item, visited in place: the one rule behind
// KeyTriggersOf and the collision search, which must not copy or allocate
// per item.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H
#define ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H

#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"
#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {

/// Calls `visit(first, second, role)` for every key or combination that fires
/// `item`, only for keys that are set; `second` is unset for a single key.
template <typename Visit>
void ForEachTrigger(const ConfigItem& item, Visit visit) {
    static const ConfigKey none;
    auto add = [&visit](const ConfigKey& first, const ConfigKey& second, const char* role) {
        if (first.isSet()) {
            visit(first, second, role);
        }
    };
    if (const auto* pair = dynamic_cast<const PairConfigItem*>(&item)) {
        add(pair->positive_key.key, pair->positive_key.second_key, "positive");
        add(pair->negative_key.key, pair->negative_key.second_key, "negative");
    } else if (const auto* composable = dynamic_cast<const ComposableConfigItem*>(&item)) {
        add(composable->key, composable->second_key, "key");
    } else if (const auto* diamond = dynamic_cast<const DiamondConfigItem*>(&item)) {
        add(diamond->top, none, "top");
        add(diamond->right, none, "right");
        add(diamond->bottom, none, "bottom");
        add(diamond->left, none, "left");
    } else {
        add(item.key, none, "key");
    }
}

/// Whether `first` (with `second`, when it is set) fires `item`, by the
/// item's own match rules: a combination through MatchComposableConfigKey, a
/// single key through MatchConfigKey.
bool Fires(ConfigItem& item, const ConfigKey& first, const ConfigKey& second);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H
