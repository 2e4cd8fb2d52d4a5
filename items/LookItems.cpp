//
// LookItems.cpp
//

#include "zuno-keymapmanager/items/LookItems.h"

#include <utility>
#include <vector>

#include "items/ItemPartsIO.h"
#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- StaringConfigItem ---------------------------------------------------------

StaringConfigItem::StaringConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<StaringConfigItem>())) {}

StaringConfigItem::~StaringConfigItem() = default;

ZUNO_KM_ITEM_JSON(StaringConfigItem)

const MemberTable& StaringConfigItem::Members() {
    using M = MembersOf<StaringConfigItem>;
    static const MemberTable table = M::table(
        "A key-triggered look mode within a range of the screen.",
        {
            M::field<&StaringConfigItem::staring_range>(kFieldStaringRange)
                .size("look area", kArea)
                .require()
                .show("Look range", kGroupPosition, "the part of the screen the look may move in"),
            M::field<&StaringConfigItem::sensitivity_x>(kFieldSensitivityX)
                .require()
                .in("%")
                .show("Horizontal sensitivity", kGroupBehaviour,
                      "horizontal sensitivity, in percent (100: one pointer pixel moves one "
                      "screen pixel)"),
            M::field<&StaringConfigItem::sensitivity_y>(kFieldSensitivityY)
                .require()
                .in("%")
                .show("Vertical sensitivity", kGroupBehaviour,
                      "vertical sensitivity, in percent (100: one pointer pixel moves one screen "
                      "pixel)"),
            M::group(kFieldResetPolicy, &parts::ResetPolicyMembers<StaringConfigItem>)
                .require()
                .show("Reset", kGroupBehaviour, "when and where the look returns to its centre"),
        },
        &ComposableConfigItem::Members());
    return table;
}

// --- DirectionalLookConfigItem, EyeConfigItem, GravityConfigItem --------------

DirectionalLookConfigItem::DirectionalLookConfigItem(std::string typeName,
                                                     std::int32_t defaultSensitivity)
    : DiamondConfigItem(std::move(typeName)), sensitivity(defaultSensitivity) {
    top = ConfigKey("keyboard", "Direction_up", 38, 328);
    right = ConfigKey("keyboard", "Direction_right", 39, 333);
    bottom = ConfigKey("keyboard", "Direction_down", 40, 336);
    left = ConfigKey("keyboard", "Direction_left", 37, 331);
}

DirectionalLookConfigItem::~DirectionalLookConfigItem() = default;

bool DirectionalLookConfigItem::IsInvalid() const {
    return !HasUsableDirectionKey();
}

bool DirectionalLookConfigItem::MatchConfigKey(const ConfigKey& other) {
    return MatchDirectionKey(other);
}

// Every direction key is required, then the sensitivity; the keys replace
// the base's key.
MemberTable DirectionalLookConfigItem::LookMembers(const char* description,
                                                   const char* sensitivityLine) {
    using M = MembersOf<DirectionalLookConfigItem>;
    std::vector<Member> list = parts::DirectionKeyMembers<DirectionalLookConfigItem>(true);
    list.push_back(M::field<&DirectionalLookConfigItem::sensitivity>(kFieldSensitivity)
                       .require()
                       .in("%")
                       .show("Sensitivity", kGroupBehaviour, sensitivityLine));
    return M::table(description, std::move(list), &ConfigItem::Members(), true);
}

EyeConfigItem::EyeConfigItem()
    : DirectionalLookConfigItem(std::string(TypeNameOf<EyeConfigItem>()), 100) {}

EyeConfigItem::~EyeConfigItem() = default;

ZUNO_KM_ITEM_JSON(EyeConfigItem)

const MemberTable& EyeConfigItem::Members() {
    static const MemberTable table =
        LookMembers("Looks around with four direction keys. Valid when any direction key is set.",
                    "how far one key press looks, in percent (100: normal)");
    return table;
}

GravityConfigItem::GravityConfigItem()
    : DirectionalLookConfigItem(std::string(TypeNameOf<GravityConfigItem>()), 20) {}

GravityConfigItem::~GravityConfigItem() = default;

ZUNO_KM_ITEM_JSON(GravityConfigItem)

const MemberTable& GravityConfigItem::Members() {
    static const MemberTable table =
        LookMembers("Tilts with four direction keys. Valid when any direction key is set.",
                    "how far one key press tilts, in percent (100: normal)");
    return table;
}

}  // namespace zunokeymapmanager
