//
// LookItems.cpp
//

#include "zuno-keymapmanager/items/LookItems.h"

#include "items/ItemPartsIO.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- StaringConfigItem ---------------------------------------------------------

StaringConfigItem::StaringConfigItem() : ComposableConfigItem("Staring") {}

StaringConfigItem::~StaringConfigItem() = default;

Poco::JSON::Object StaringConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldStaringRange, json::sizeObject(staring_range));
    result.set(kFieldSensitivityX, sensitivity_x);
    result.set(kFieldSensitivityY, sensitivity_y);
    result.set(kFieldResetPolicy, parts::resetPolicyObject(*this));
    return result;
}

void StaringConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    json::readSize(object, kFieldStaringRange, staring_range);
    json::read(object, kFieldSensitivityX, sensitivity_x);
    json::read(object, kFieldSensitivityY, sensitivity_y);
    parts::readResetPolicy(object, *this);
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
        item.WriteDirectionKeys(result);
        result.set(kFieldSensitivity, item.sensitivity);
        return result;
    }

    static void fill(Item& item, const Poco::JSON::Object::Ptr& object) {
        item.ConfigItem::FillFromJsonObject(object);
        item.ReadDirectionKeys(object, true);
        json::read(object, kFieldSensitivity, item.sensitivity);
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

}  // namespace zunokeymapmanager
