//
// SwipeholdItem.cpp
//

#include "zuno-keymapmanager/items/SwipeholdItem.h"

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

// Each settings block has exactly one reader and one writer. Skill items reach
// them through a temporary drag item, so both item types share the format.

void readFirstPointPolicy(const json::ObjectPtr& parent, FirstPointPolicy& out) {
    json::ObjectPtr policy = json::optionalObject(parent, kFieldFirstPointPolicy);
    if (policy.isNull()) {
        return;
    }
    json::read(policy, kFieldHandleType, out.handle_type);
    json::read(policy, kFieldInterval, out.interval);
    json::read(policy, kFieldPeriod, out.period);
    json::read(policy, kFieldSteps, out.steps);
    json::read(policy, kFieldSpeed, out.speed);
    // Added to the format later; older documents lack them.
    json::readOptional(policy, kFieldWaitForSecond, out.wait_for_second);
    json::readOptional(policy, kFieldMoveType, out.move_type);
    json::readOptional(policy, kFieldIdleBeforeFirstPress, out.idle_before_first_press);
    json::readOptional(policy, kFieldNoPressFirstCenterPoint, out.no_press_first_center_point);
}

json::ObjectPtr firstPointPolicyObject(const FirstPointPolicy& policy) {
    json::ObjectPtr result = json::newObject();
    result->set(kFieldHandleType, policy.handle_type);
    result->set(kFieldInterval, policy.interval);
    result->set(kFieldSteps, policy.steps);
    result->set(kFieldPeriod, policy.period);
    result->set(kFieldSpeed, policy.speed);
    result->set(kFieldWaitForSecond, policy.wait_for_second);
    result->set(kFieldMoveType, policy.move_type);
    result->set(kFieldIdleBeforeFirstPress, policy.idle_before_first_press);
    result->set(kFieldNoPressFirstCenterPoint, policy.no_press_first_center_point);
    return result;
}

void readSubsequentPointPolicy(const json::ObjectPtr& parent, SubsequentPointPolicy& out) {
    json::ObjectPtr policy = json::optionalObject(parent, kFieldSubsequentPointPolicy);
    if (policy.isNull()) {
        return;
    }
    json::read(policy, kFieldHandleType, out.handle_type);
    json::read(policy, kFieldPeriod, out.period);
    json::read(policy, kFieldSteps, out.steps);
}

json::ObjectPtr subsequentPointPolicyObject(const SubsequentPointPolicy& policy) {
    json::ObjectPtr result = json::newObject();
    result->set(kFieldHandleType, policy.handle_type);
    result->set(kFieldSteps, policy.steps);
    result->set(kFieldPeriod, policy.period);
    return result;
}

void readCompensatoryCore(const json::ObjectPtr& policy, TargetPointInputCompensatoryPolicy& out) {
    json::read(policy, kFieldEnable, out.enable);
    json::read(policy, kFieldPeriod, out.period);
    json::read(policy, kFieldSteps, out.steps);
    json::read(policy, kFieldCount, out.count);
    json::read(policy, kFieldDistance, out.distance);
}

void readCompensatoryPolicy(const json::ObjectPtr& parent,
                            TargetPointInputCompensatoryPolicy& out) {
    if (json::optionalObject(parent, kFieldTargetPointInputCompensatoryPolicy).isNull()) {
        return;
    }
    // The object is looked up and its core members read twice. The second
    // pass changes nothing; it is part of the established reading order and
    // kept so that a faulty document fails exactly where hosts expect it to.
    readCompensatoryCore(json::object(parent, kFieldTargetPointInputCompensatoryPolicy), out);
    json::ObjectPtr policy = json::object(parent, kFieldTargetPointInputCompensatoryPolicy);
    readCompensatoryCore(policy, out);
    json::readOptional(policy, kFieldXPolicy, out.x_policy);
    json::readOptional(policy, kFieldXPolicySlopePeriod, out.x_policy_slope_period);
    json::readOptional(policy, kFieldXPolicyInterceptPhaseshift, out.x_policy_intercept_phaseshift);
    json::readOptional(policy, kFieldYPolicy, out.y_policy);
    json::readOptional(policy, kFieldYPolicySlopePeriod, out.y_policy_slope_period);
    json::readOptional(policy, kFieldYPolicyInterceptPhaseshift, out.y_policy_intercept_phaseshift);
}

json::ObjectPtr compensatoryPolicyObject(const TargetPointInputCompensatoryPolicy& policy) {
    json::ObjectPtr result = json::newObject();
    result->set(kFieldEnable, policy.enable);
    result->set(kFieldCount, policy.count);
    result->set(kFieldDistance, policy.distance);
    result->set(kFieldSteps, policy.steps);
    result->set(kFieldPeriod, policy.period);
    result->set(kFieldXPolicy, policy.x_policy);
    result->set(kFieldXPolicySlopePeriod, policy.x_policy_slope_period);
    result->set(kFieldXPolicyInterceptPhaseshift, policy.x_policy_intercept_phaseshift);
    result->set(kFieldYPolicy, policy.y_policy);
    result->set(kFieldYPolicySlopePeriod, policy.y_policy_slope_period);
    result->set(kFieldYPolicyInterceptPhaseshift, policy.y_policy_intercept_phaseshift);
    return result;
}

}  // namespace

SwipeholdConfigItem::SwipeholdConfigItem() : DiamondConfigItem("Swipehold") {
    top = ConfigKey("keyboard", "W", 87, 17);
    right = ConfigKey("keyboard", "D", 68, 32);
    bottom = ConfigKey("keyboard", "S", 83, 31);
    left = ConfigKey("keyboard", "A", 65, 30);
}

SwipeholdConfigItem::~SwipeholdConfigItem() = default;

Poco::JSON::Object SwipeholdConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    result.set(kFieldFirstPointPolicy, firstPointPolicyObject(first_point_policy));
    result.set(kFieldSubsequentPointPolicy, subsequentPointPolicyObject(subsequent_point_policy));
    WriteDirectionKeys(result);
    result.set(kFieldRelRadius, rel_radius);
    result.set(kFieldHoldCenterIntervalAfterRelease, hold_center_interval_after_release);
    result.set(kFieldInLinePolicy, in_line_policy);
    result.set(kFieldTargetPointInputCompensatoryPolicy,
               compensatoryPolicyObject(target_point_input_compensatory_policy));
    return result;
}

void SwipeholdConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    FillFromJsonObjectExtendInfo(object);
}

void SwipeholdConfigItem::FillFromJsonObjectExtendInfo(const Poco::JSON::Object::Ptr& object) {
    readFirstPointPolicy(object, first_point_policy);
    readSubsequentPointPolicy(object, subsequent_point_policy);
    ReadDirectionKeys(object, false);
    json::readOptional(object, kFieldRelRadius, rel_radius);
    json::readOptional(object, kFieldHoldCenterIntervalAfterRelease,
                       hold_center_interval_after_release);
    json::readOptional(object, kFieldInLinePolicy, in_line_policy);
    readCompensatoryPolicy(object, target_point_input_compensatory_policy);
}

bool SwipeholdConfigItem::IsInvalid() const {
    return !HasUsableDirectionKey();
}

bool SwipeholdConfigItem::MatchConfigKey(const ConfigKey& other) {
    return MatchDirectionKey(other);
}

}  // namespace zunokeymapmanager
