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

StaringConfigItem::StaringConfigItem() : ComposableConfigItem("Staring") {}

StaringConfigItem::~StaringConfigItem() = default;

Poco::JSON::Object StaringConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    WriteMembers(Members(), this, result);
    return result;
}

void StaringConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    ReadMembers(Members(), this, object);
}

const MemberTable& StaringConfigItem::Members() {
    using M = MembersOf<StaringConfigItem>;
    static const MemberTable table = M::table(
        "A key-triggered look mode within a range of the screen.",
        {
            M::field<&StaringConfigItem::staring_range>(kFieldStaringRange)
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

// --- EyeConfigItem and GravityConfigItem -----------------------------------------

// The two items differ only in their type name and default sensitivity, so
// they share this one implementation.
template <typename Item>
struct DirectionalLookOps {
    static void setDefaultKeys(Item& item) {
        item.top = ConfigKey("keyboard", "Direction_up", 38, 328);
        item.right = ConfigKey("keyboard", "Direction_right", 39, 333);
        item.bottom = ConfigKey("keyboard", "Direction_down", 40, 336);
        item.left = ConfigKey("keyboard", "Direction_left", 37, 331);
    }

    static Poco::JSON::Object convert(const Item& item) {
        Poco::JSON::Object result = item.ConfigItem::ConvertToJsonObject();
        WriteMembers(Item::Members(), &item, result);
        return result;
    }

    static void fill(Item& item, const Poco::JSON::Object::Ptr& object) {
        item.ConfigItem::FillFromJsonObject(object);
        ReadMembers(Item::Members(), &item, object);
    }

    // Every direction key is required, then the sensitivity.
    static MemberTable members(const char* description, const char* sensitivity) {
        using M = MembersOf<Item>;
        std::vector<Member> list = parts::DirectionKeyMembers<Item>(true);
        list.push_back(M::template field<&Item::sensitivity>(kFieldSensitivity)
                           .require()
                           .in("%")
                           .show("Sensitivity", kGroupBehaviour, sensitivity));
        return M::table(description, std::move(list), &ConfigItem::Members(), true);
    }

    static bool isInvalid(const Item& item) { return !item.HasUsableDirectionKey(); }

    static bool match(const Item& item, const ConfigKey& other) {
        return item.MatchDirectionKey(other);
    }
};

EyeConfigItem::EyeConfigItem() : DiamondConfigItem("Eye") {
    DirectionalLookOps<EyeConfigItem>::setDefaultKeys(*this);
}

EyeConfigItem::~EyeConfigItem() = default;

Poco::JSON::Object EyeConfigItem::ConvertToJsonObject() const {
    return DirectionalLookOps<EyeConfigItem>::convert(*this);
}

void EyeConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    DirectionalLookOps<EyeConfigItem>::fill(*this, object);
}

bool EyeConfigItem::IsInvalid() const {
    return DirectionalLookOps<EyeConfigItem>::isInvalid(*this);
}

bool EyeConfigItem::MatchConfigKey(const ConfigKey& other) {
    return DirectionalLookOps<EyeConfigItem>::match(*this, other);
}

const MemberTable& EyeConfigItem::Members() {
    static const MemberTable table = DirectionalLookOps<EyeConfigItem>::members(
        "Looks around with four direction keys. Valid when any direction key is set.",
        "how far one key press looks, in percent (100: normal)");
    return table;
}

GravityConfigItem::GravityConfigItem() : DiamondConfigItem("Gravity") {
    DirectionalLookOps<GravityConfigItem>::setDefaultKeys(*this);
}

GravityConfigItem::~GravityConfigItem() = default;

Poco::JSON::Object GravityConfigItem::ConvertToJsonObject() const {
    return DirectionalLookOps<GravityConfigItem>::convert(*this);
}

void GravityConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    DirectionalLookOps<GravityConfigItem>::fill(*this, object);
}

bool GravityConfigItem::IsInvalid() const {
    return DirectionalLookOps<GravityConfigItem>::isInvalid(*this);
}

bool GravityConfigItem::MatchConfigKey(const ConfigKey& other) {
    return DirectionalLookOps<GravityConfigItem>::match(*this, other);
}

const MemberTable& GravityConfigItem::Members() {
    static const MemberTable table = DirectionalLookOps<GravityConfigItem>::members(
        "Tilts with four direction keys. Valid when any direction key is set.",
        "how far one key press tilts, in percent (100: normal)");
    return table;
}

}  // namespace zunokeymapmanager
