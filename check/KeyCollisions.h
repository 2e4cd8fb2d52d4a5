//
// KeyCollisions.h
//
// Items that the same key or key combination fires, found in time and space
// linear in the number of items.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_KEYCOLLISIONS_H
#define ZUNO_KEYMAPMANAGER_CHECK_KEYCOLLISIONS_H

#include <string>
#include <vector>

#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {
/// One key or combination and every item it fires.
struct Collision {
    std::vector<int> items;  ///< two or more item indices, ascending
    std::string keys;        ///< the key or combination, as people read it
};

/// Every key or combination that fires two or more of `items`: the items
/// whose trigger it is, and the items it fires by their own match rules. One
/// collision per distinct trigger, however many items share it, so a
/// document of N items on one key gives one collision, not N*(N-1)/2 pairs.
/// The items are indexed by what their keys match on (device and scan code,
/// or device and name for gamepad keys); a trigger asks only the items
/// sharing its bucket. Collisions come in the order of their first trigger
/// (by item, then the item's own trigger order).
std::vector<Collision> FindCollisions(const std::vector<ConfigItem*>& items);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_KEYCOLLISIONS_H
