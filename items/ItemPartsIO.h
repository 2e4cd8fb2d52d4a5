//
// ItemPartsIO.h
//
// Members that several item classes declare alike: the look reset policy
// and the four direction keys. Each is declared here once, for whichever
// class holds it.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H
#define ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H

#include <vector>

#include "zuno-keymapmanager/items/DiamondConfigItem.h"
#include "zuno-keymapmanager/model/Fields.h"
#include "zuno-keymapmanager/model/Members.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {
namespace parts {

/// The "reset_policy" object of a look item, whose members the item holds
/// itself: `reset_type`, `reset_wait_interval`, `auto_reset_period`, `need_reset`.
template <typename Item>
const MemberTable& ResetPolicyMembers() {
    using M = MembersOf<Item>;
    static const MemberTable table = M::part(
        "reset_policy", "when and where the look returns to its centre",
        {
            M::template field<&Item::reset_type>(kFieldResetType)
                .require()
                .oneOf(kResetTypeNames)
                .show("Reset area", kGroupBehaviour,
                      "the area the look is kept in before it is reset"),
            M::template field<&Item::reset_wait_interval>(kFieldResetWaitInterval)
                .require()
                .in("ms")
                .show("Reset wait", kGroupAdvanced, "pause before a reset, in milliseconds"),
            M::template field<&Item::auto_reset_period>(kFieldAutoResetPeriod)
                .require()
                .in("ms")
                .show("Auto reset", kGroupAdvanced,
                      "time after which the look resets by itself, in milliseconds (-1: never)"),
            M::template field<&Item::need_reset>(kFieldNeedReset)
                .require()
                .show("Reset", kGroupBehaviour, "whether the look is reset at all"),
        });
    return table;
}

/// The four direction keys of an item built on DiamondConfigItem, in the
/// order they are read: top, bottom, left, right.
template <typename Item>
std::vector<Member> DirectionKeyMembers(bool required) {
    using M = MembersOf<Item>;
    std::vector<Member> keys{
        M::template field<&DiamondConfigItem::top>(kFieldTopKey)
            .key(KeyRole::Direction, "top")
            .show("Up key", kGroupKeys, "the key that steers up"),
        M::template field<&DiamondConfigItem::bottom>(kFieldBottomKey)
            .key(KeyRole::Direction, "bottom")
            .show("Down key", kGroupKeys, "the key that steers down"),
        M::template field<&DiamondConfigItem::left>(kFieldLeftKey)
            .key(KeyRole::Direction, "left")
            .show("Left key", kGroupKeys, "the key that steers left"),
        M::template field<&DiamondConfigItem::right>(kFieldRightKey)
            .key(KeyRole::Direction, "right")
            .show("Right key", kGroupKeys, "the key that steers right"),
    };
    for (Member& key : keys) {
        key.required = required;
    }
    return keys;
}

}  // namespace parts
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H
