//
// ItemRegistry.h
//
// How item classes make themselves known to ConfigFactory. The model knows the
// type names; the item classes, which build on the model, register a maker for
// their own name while the library is loaded.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_ITEMREGISTRY_H
#define ZUNO_KEYMAPMANAGER_MODEL_ITEMREGISTRY_H

#include <initializer_list>
#include <utility>

#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

class ConfigItem;

using ItemMaker = ConfigItem* (*)();

/// Installs makers for item types. Called only during the library's static
/// initialisation, before any lookup can happen; the table is read-only after.
bool RegisterItemMakers(std::initializer_list<std::pair<ItemType, ItemMaker>> makers);

/// The maker for `type`, or null.
ItemMaker FindItemMaker(ItemType type);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_ITEMREGISTRY_H
