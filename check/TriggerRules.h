//
// TriggerRules.h
//
// Which keys fire an item, visited in place: the one rule behind
// KeyTriggersOf and the collision search, which must not copy or allocate
// per item.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H
#define ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H

#include <cstddef>
#include <vector>

#include "zuno-keymapmanager/items/ItemLayout.h"
#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {

/// Calls `visit(first, second, role)` for every key or combination that fires
/// `item`, only for keys that are set; `second` is unset for a single key.
template <typename Visit>
void ForEachTrigger(const ConfigItem& item, Visit visit) {
    static const ConfigKey none;
    const std::vector<KeySlot>& slots = KeySlotsOf(item);
    for (const KeySlot& slot : slots) {
        if (!slot.fires()) {
            continue;
        }
        const ConfigKey& first = slot.in(item);
        if (first.isSet()) {
            visit(first,
                  slot.second < 0 ? none : slots[static_cast<std::size_t>(slot.second)].in(item),
                  slot.name.c_str());
        }
    }
}

/// Whether `first` (with `second`, when it is set) fires `item`, by the
/// item's own match rules: a combination through MatchComposableConfigKey, a
/// single key through MatchConfigKey.
bool Fires(ConfigItem& item, const ConfigKey& first, const ConfigKey& second);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_TRIGGERRULES_H
