//
// WalkItems.cpp
//
// Every member of these items is required on reading: the items are only
// usable with the full set of values.
//

#include "zuno-keymapmanager/items/WalkItems.h"

#include "items/ItemPartsIO.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- JoystickLeftWalkConfigItem ----------------------------------------------------

JoystickLeftWalkConfigItem::JoystickLeftWalkConfigItem() : ConfigItem("LeftStickWalk") {
    key = ConfigKey("joystick", "Left_Stick", kUnsetKeyCode, kUnsetKeyCode);
}

JoystickLeftWalkConfigItem::~JoystickLeftWalkConfigItem() = default;

Poco::JSON::Object JoystickLeftWalkConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    result.set(kFieldRelRadius, rel_radius);
    return result;
}

void JoystickLeftWalkConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldRelRadius, rel_radius);
}

// --- JoystickRightEyeConfigItem ----------------------------------------------------

JoystickRightEyeConfigItem::JoystickRightEyeConfigItem() : ConfigItem("RightStickEye") {
    key = ConfigKey("joystick", "Right_Stick", kUnsetKeyCode, kUnsetKeyCode);
}

JoystickRightEyeConfigItem::~JoystickRightEyeConfigItem() = default;

Poco::JSON::Object JoystickRightEyeConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    result.set(kFieldSensitivity, sensitivity);
    result.set(kFieldStaringRange, json::sizeObject(staring_range));
    result.set(kFieldResetPolicy, parts::resetPolicyObject(*this));
    return result;
}

void JoystickRightEyeConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldSensitivity, sensitivity);
    json::readSize(object, kFieldStaringRange, staring_range);
    parts::readResetPolicy(object, *this);
}

// --- MouseRightWalkConfigItem ------------------------------------------------------

MouseRightWalkConfigItem::MouseRightWalkConfigItem() : ConfigItem("RightWalk") {
    key = ConfigKey("mouse", "right_mouse", 2, 2);
}

MouseRightWalkConfigItem::~MouseRightWalkConfigItem() = default;

Poco::JSON::Object MouseRightWalkConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    result.set(kFieldRelMeasurementPos, json::pointObject(rel_measurement_pos));
    result.set(kFieldDurationFactor, duration_factor);

    json::ObjectPtr policy = json::newObject();
    policy->set(kFieldInterval, first_move_policy.interval);
    policy->set(kFieldSteps, first_move_policy.steps);
    policy->set(kFieldPeriod, first_move_policy.period);
    policy->set(kFieldSpeed, first_move_policy.speed);
    policy->set(kFieldRelRadius, first_move_policy.rel_radius);
    result.set(kFieldFirstMovePolicy, policy);
    return result;
}

void MouseRightWalkConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    json::readPoint(object, kFieldRelMeasurementPos, rel_measurement_pos);
    json::read(object, kFieldDurationFactor, duration_factor);

    const json::ObjectPtr policy = json::object(object, kFieldFirstMovePolicy);
    json::read(policy, kFieldInterval, first_move_policy.interval);
    json::read(policy, kFieldPeriod, first_move_policy.period);
    json::read(policy, kFieldSteps, first_move_policy.steps);
    json::read(policy, kFieldSpeed, first_move_policy.speed);
    json::read(policy, kFieldRelRadius, first_move_policy.rel_radius);
}

}  // namespace zunokeymapmanager
