//
// ItemTable.cpp
//
// The list of item types: one line per type, naming its class. Everything
// else about a type is in its class and the class's member table.
//

#include <typeinfo>

#include "model/ItemTable.h"
#include "zuno-keymapmanager/items/CurveMacroItems.h"
#include "zuno-keymapmanager/items/FireItem.h"
#include "zuno-keymapmanager/items/LookItems.h"
#include "zuno-keymapmanager/items/SpellItems.h"
#include "zuno-keymapmanager/items/SwipeholdItem.h"
#include "zuno-keymapmanager/items/TapItems.h"
#include "zuno-keymapmanager/items/WalkItems.h"
#include "zuno-keymapmanager/items/WheelZoomObserveItems.h"

namespace zunokeymapmanager {

namespace {

template <typename Item>
ItemDeclaration declare(ItemType type) {
    return {type, [] { return static_cast<ConfigItem*>(new Item()); }, &Item::Members,
            &typeid(Item)};
}

}  // namespace

const std::vector<ItemDeclaration>& ItemDeclarations() {
    static const std::vector<ItemDeclaration> types{
        declare<ClickConfigItem>(ItemType::Click),
        declare<BunchClickConfigItem>(ItemType::BunchClick),
        declare<SwipeholdConfigItem>(ItemType::Swipehold),
        declare<FireConfigItem>(ItemType::Fire),
        declare<StaringConfigItem>(ItemType::Staring),
        declare<SpellConfigItem>(ItemType::Spell),
        declare<SpellCancelConfigItem>(ItemType::SpellCancel),
        declare<MouseRightWalkConfigItem>(ItemType::RightWalk),
        declare<EyeConfigItem>(ItemType::Eye),
        declare<GravityConfigItem>(ItemType::Gravity),
        declare<MacroConfigItem>(ItemType::Macro),
        declare<CurveConfigItem>(ItemType::Curve),
        declare<JoystickLeftWalkConfigItem>(ItemType::LeftStickWalk),
        declare<JoystickRightEyeConfigItem>(ItemType::RightStickEye),
        declare<WheelConfigItem>(ItemType::Wheel),
        declare<ZoomConfigItem>(ItemType::Zoom),
        declare<ObserveConfigItem>(ItemType::Observe),
        declare<TipConfigItem>(ItemType::Tip),
    };
    return types;
}

const ItemDeclaration* DeclarationOf(const ConfigItem& item) {
    const std::type_info& type = typeid(item);
    const std::vector<ItemDeclaration>& types = ItemDeclarations();
    // The library's own classes have one type_info each; comparing names is
    // left for classes that reach it some other way.
    for (const ItemDeclaration& declaration : types) {
        if (declaration.typeInfo == &type) {
            return &declaration;
        }
    }
    for (const ItemDeclaration& declaration : types) {
        if (*declaration.typeInfo == type) {
            return &declaration;
        }
    }
    return nullptr;
}

ConfigItem* MakeItemOfType(ItemType type) {
    for (const ItemDeclaration& declaration : ItemDeclarations()) {
        if (declaration.type == type) {
            return declaration.make();
        }
    }
    return nullptr;
}

}  // namespace zunokeymapmanager
