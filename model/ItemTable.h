//
// ItemTable.h
//
// The one place that ties every item type to its class. The factory lives in
// model/ and the classes in items/, which build on the model; so the model
// declares the table here and items/ItemTable.cpp defines it. The model's
// headers never include an item header, and a static archive needs no
// registration at load time for the factory to know every type.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_ITEMTABLE_H
#define ZUNO_KEYMAPMANAGER_MODEL_ITEMTABLE_H

#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

class ConfigItem;

/// A new item of `type` with all defaults, or null for ItemType::Unknown.
ConfigItem* MakeItemOfType(ItemType type);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_ITEMTABLE_H
