//
// FireItem.cpp
//

#include "zuno-keymapmanager/items/FireItem.h"

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

FireConfigItem::FireConfigItem() : ConfigItem(std::string(TypeNameOf<FireConfigItem>())) {
    key = ConfigKey("mouse", "left_mouse", 1, 1);
}

FireConfigItem::~FireConfigItem() = default;

ZUNO_KM_ITEM_JSON(FireConfigItem)

const MemberTable& FireConfigItem::Members() {
    using M = MembersOf<FireConfigItem>;
    static const MemberTable table = M::table(
        "A fire button that can be dragged to aim while firing.",
        {
            M::block<&FireConfigItem::swipehold_info>(kFieldSwipeholdInfo,
                                                      &FireSwipeholdInfo::Members)
                .show("Drag area", kGroupPosition, "the drag area"),
            M::block<&FireConfigItem::fire_option>(kFieldFireOption, &FireOption::Members)
                .show("Fire range", kGroupBehaviour, "how the fire touch is limited"),
            M::field<&FireConfigItem::need_fire_and_drag>(kFieldNeedFireAndDrag)
                .require()
                .show("Fire and drag", kGroupBehaviour, "whether firing also drags to aim"),
        },
        &ConfigItem::Members());
    return table;
}

const MemberTable& FireSwipeholdInfo::Members() {
    using M = MembersOf<FireSwipeholdInfo>;
    static const MemberTable table = M::table(
        "the drag area",
        {
            M::field<&FireSwipeholdInfo::rel_radius>(kFieldRelRadius)
                .size("drag radius", kRadius)
                .require()
                .in("screen")
                .show("Drag radius", kGroupPosition,
                      "how far the fire touch may be dragged from its centre, as a fraction of "
                      "the screen; 0 leaves no room to drag"),
            M::field<&FireSwipeholdInfo::rel_position>(kFieldRelPosition)
                .require()
                .point("drag centre", kMoves | kNullIsUnset)
                .show("Drag centre", kGroupPosition,
                      "the drag centre; (0, 0) means the item's own position"),
            M::field<&FireSwipeholdInfo::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps a drag move is made of"),
            M::block<&FireSwipeholdInfo::invalid_zone_info>(kFieldInvalidZoneInfo,
                                                            &InvalidZoneInfo::Members)
                .show("Dead zone", kGroupAdvanced,
                      "a ring around the centre where small moves are ignored"),
        });
    return table;
}

const MemberTable& FireOption::Members() {
    using M = MembersOf<FireOption>;
    static const MemberTable table = M::table(
        "how the fire touch is limited",
        {
            M::field<&FireOption::fire_range_policy>(kFieldFireRangePolicy)
                .require()
                .oneOf(kFireRangePolicyNames)
                .show("Fire range", kGroupBehaviour,
                      "Fire_range_dependent_swipehold keeps the drag within swipehold_info; "
                      "Fire_range_unlimited lets it go anywhere"),
        });
    return table;
}

}  // namespace zunokeymapmanager
