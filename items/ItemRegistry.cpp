//
// ItemRegistry.cpp
//
// The one table that ties every item type name to its class.
//

#include "model/ItemRegistry.h"

#include "zuno-keymapmanager/items/LookItems.h"
#include "zuno-keymapmanager/items/SpellItems.h"
#include "zuno-keymapmanager/items/SwipeholdItem.h"
#include "zuno-keymapmanager/items/TapItems.h"

namespace zunokeymapmanager {

namespace {

template <typename Item>
ConfigItem* make() {
    return new Item();
}

// Runs while the library is loaded, before any host call can reach the factory.
[[maybe_unused]] const bool kItemsRegistered = RegisterItemMakers({
    {ItemType::Unknown, nullptr},
    {ItemType::Click, &make<ClickConfigItem>},
    {ItemType::BunchClick, &make<BunchClickConfigItem>},
    {ItemType::Tip, &make<TipConfigItem>},
    {ItemType::Swipehold, &make<SwipeholdConfigItem>},
    {ItemType::Staring, &make<StaringConfigItem>},
    {ItemType::Spell, &make<SpellConfigItem>},
    {ItemType::SpellCancel, &make<SpellCancelConfigItem>},
    {ItemType::Eye, &make<EyeConfigItem>},
    {ItemType::Gravity, &make<GravityConfigItem>},
});

}  // namespace

}  // namespace zunokeymapmanager
