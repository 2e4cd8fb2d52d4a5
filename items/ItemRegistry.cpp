//
// ItemRegistry.cpp
//
// The one table that ties every item type name to its class.
//

#include "model/ItemRegistry.h"

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
    {ItemType::Fire, &make<FireConfigItem>},
    {ItemType::RightWalk, &make<MouseRightWalkConfigItem>},
    {ItemType::Macro, &make<MacroConfigItem>},
    {ItemType::Curve, &make<CurveConfigItem>},
    {ItemType::LeftStickWalk, &make<JoystickLeftWalkConfigItem>},
    {ItemType::RightStickEye, &make<JoystickRightEyeConfigItem>},
    {ItemType::Wheel, &make<WheelConfigItem>},
    {ItemType::Zoom, &make<ZoomConfigItem>},
    {ItemType::Observe, &make<ObserveConfigItem>},
});

}  // namespace

}  // namespace zunokeymapmanager
