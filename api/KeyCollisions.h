//
// KeyCollisions.h
//
// Pairs of items that the same key or key combination fires, found in time
// linear in the number of items.
//

#ifndef ZUNO_KEYMAPMANAGER_API_KEYCOLLISIONS_H
#define ZUNO_KEYMAPMANAGER_API_KEYCOLLISIONS_H

#include <string>
#include <vector>

#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {

struct Collision {
    int first = 0;     ///< the smaller item index
    int second = 0;    ///< the larger one
    std::string keys;  ///< the key or combination both fire on, as people read it
};

/// Every pair of `items` that one trigger of either fires, each pair once.
/// The items are indexed by what their keys match on (device and scan code,
/// or device and name for gamepad keys); only items sharing a bucket with a
/// trigger are asked, by their own match rules. The pairs come in the order
/// of the plain walk: by the item whose trigger found them, then its trigger,
/// then the other item's index.
std::vector<Collision> FindCollisions(const std::vector<ConfigItem*>& items);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_KEYCOLLISIONS_H
