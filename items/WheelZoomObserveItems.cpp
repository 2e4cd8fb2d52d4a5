//
// WheelZoomObserveItems.cpp
//

#include "zuno-keymapmanager/items/WheelZoomObserveItems.h"

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- WheelConfigItem ---------------------------------------------------------------

WheelConfigItem::WheelConfigItem() : PairConfigItem("Wheel") {
    positive_key.key = ConfigKey("keyboard", "Direction_up", 38, 328);
    negative_key.key = ConfigKey("keyboard", "Direction_down", 40, 336);
}

WheelConfigItem::~WheelConfigItem() = default;

Poco::JSON::Object WheelConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = PairConfigItem::ConvertToJsonObject();
    result.set(kFieldSensitivity, sensitivity);
    result.set(kFieldDuration, duration);
    result.set(kFieldOrientation, orientation);
    return result;
}

void WheelConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    PairConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldSensitivity, sensitivity);
    json::read(object, kFieldDuration, duration);
    json::read(object, kFieldOrientation, orientation);
}

// --- ZoomConfigItem ----------------------------------------------------------------

// The mouse wheel has scan codes of its own but no virtual key.
ZoomConfigItem::ZoomConfigItem() : PairConfigItem("Zoom") {
    positive_key.key = ConfigKey("mouse", "wheel_up_mouse", -1, 548);
    negative_key.key = ConfigKey("mouse", "wheel_down_mouse", -1, 549);
}

ZoomConfigItem::~ZoomConfigItem() = default;

Poco::JSON::Object ZoomConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = PairConfigItem::ConvertToJsonObject();
    result.set(kFieldSensitivity, sensitivity);
    result.set(kFieldOrientation, orientation);
    result.set(kFieldDuration, duration);
    result.set(kFieldOneSideGap, one_side_gap);
    return result;
}

void ZoomConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    PairConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldSensitivity, sensitivity);
    json::read(object, kFieldOrientation, orientation);
    json::read(object, kFieldDuration, duration);
    json::read(object, kFieldOneSideGap, one_side_gap);
}

// --- ObserveConfigItem -------------------------------------------------------------

ObserveConfigItem::ObserveConfigItem() : ComposableConfigItem("Observe") {
    key = ConfigKey("keyboard", "Alt", 18, 56);
}

Poco::JSON::Object ObserveConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldSensitivityX, sensitivity_x);
    result.set(kFieldSensitivityY, sensitivity_y);
    result.set(kFieldSensitivity, sensitivity);
    return result;
}

void ObserveConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldSensitivityX, sensitivity_x);
    json::read(object, kFieldSensitivityY, sensitivity_y);
    json::read(object, kFieldSensitivity, sensitivity);
}

}  // namespace zunokeymapmanager
