//
// ItemTable.cpp
//
// One switch naming each item class; the compiler reports a type left out.
//

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

ConfigItem* MakeItemOfType(ItemType type) {
    switch (type) {
        case ItemType::Unknown:
            return nullptr;
        case ItemType::Click:
            return new ClickConfigItem();
        case ItemType::BunchClick:
            return new BunchClickConfigItem();
        case ItemType::Tip:
            return new TipConfigItem();
        case ItemType::Swipehold:
            return new SwipeholdConfigItem();
        case ItemType::Staring:
            return new StaringConfigItem();
        case ItemType::Spell:
            return new SpellConfigItem();
        case ItemType::SpellCancel:
            return new SpellCancelConfigItem();
        case ItemType::Eye:
            return new EyeConfigItem();
        case ItemType::Gravity:
            return new GravityConfigItem();
        case ItemType::Fire:
            return new FireConfigItem();
        case ItemType::RightWalk:
            return new MouseRightWalkConfigItem();
        case ItemType::Macro:
            return new MacroConfigItem();
        case ItemType::Curve:
            return new CurveConfigItem();
        case ItemType::LeftStickWalk:
            return new JoystickLeftWalkConfigItem();
        case ItemType::RightStickEye:
            return new JoystickRightEyeConfigItem();
        case ItemType::Wheel:
            return new WheelConfigItem();
        case ItemType::Zoom:
            return new ZoomConfigItem();
        case ItemType::Observe:
            return new ObserveConfigItem();
    }
    return nullptr;
}

}  // namespace zunokeymapmanager
