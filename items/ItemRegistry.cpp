//
// ItemRegistry.cpp
//
// The one table that ties every item type name to its class.
//

#include "model/ItemRegistry.h"

namespace zunokeymapmanager {

namespace {

template <typename Item>
ConfigItem* make() {
    return new Item();
}

// Runs while the library is loaded, before any host call can reach the factory.
[[maybe_unused]] const bool kItemsRegistered = RegisterItemMakers({
    {ItemType::Unknown, nullptr},
});

}  // namespace

}  // namespace zunokeymapmanager
