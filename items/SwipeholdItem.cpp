//
// SwipeholdItem.cpp
//

#include "zuno-keymapmanager/items/SwipeholdItem.h"

#include <utility>
#include <vector>

#include "items/ItemPartsIO.h"
#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

SwipeholdConfigItem::SwipeholdConfigItem()
    : DiamondConfigItem(std::string(TypeNameOf<SwipeholdConfigItem>())) {
    top = ConfigKey("keyboard", "W", 87, 17);
    right = ConfigKey("keyboard", "D", 68, 32);
    bottom = ConfigKey("keyboard", "S", 83, 31);
    left = ConfigKey("keyboard", "A", 65, 30);
}

SwipeholdConfigItem::~SwipeholdConfigItem() = default;

Poco::JSON::Object SwipeholdConfigItem::ConvertToJsonObject() const {
    return WriteItem(*this, Members());
}

void SwipeholdConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    FillFromJsonObjectExtendInfo(object);
}

void SwipeholdConfigItem::FillFromJsonObjectExtendInfo(const Poco::JSON::Object::Ptr& object) {
    ReadMembers(Members(), this, object);
}

bool SwipeholdConfigItem::IsInvalid() const {
    return !HasUsableDirectionKey();
}

bool SwipeholdConfigItem::MatchConfigKey(const ConfigKey& other) {
    return MatchDirectionKey(other);
}

// Each settings block has one table. Skill items read and write theirs
// through a temporary drag item, so both item types share the format.
const MemberTable& SwipeholdConfigItem::Members() {
    using M = MembersOf<SwipeholdConfigItem>;
    static const MemberTable table = [] {
        std::vector<Member> list{
            M::block<&SwipeholdConfigItem::first_point_policy>(kFieldFirstPointPolicy,
                                                               &FirstPointPolicy::Members)
                .show("First touch", kGroupAdvanced, "how the first touch of a drag is made"),
            M::block<&SwipeholdConfigItem::subsequent_point_policy>(kFieldSubsequentPointPolicy,
                                                                    &SubsequentPointPolicy::Members)
                .show("Later touches", kGroupAdvanced,
                      "how later touches of the same drag are made"),
        };
        for (Member& key : parts::DirectionKeyMembers<SwipeholdConfigItem>(false)) {
            list.push_back(key);
        }
        list.push_back(M::field<&SwipeholdConfigItem::rel_radius>(kFieldRelRadius)
                           .size("drag radius", kRadius)
                           .in("screen")
                           .show("Drag radius", kGroupPosition,
                                 "how far the drag reaches from its centre, as a fraction of the "
                                 "screen; 0 leaves no room to drag"));
        list.push_back(M::field<&SwipeholdConfigItem::hold_center_interval_after_release>(
                           kFieldHoldCenterIntervalAfterRelease)
                           .in("ms")
                           .show("Centre hold", kGroupAdvanced,
                                 "how long the centre stays pressed after the keys are released, "
                                 "in milliseconds"));
        list.push_back(M::field<&SwipeholdConfigItem::in_line_policy>(kFieldInLinePolicy)
                           .oneOf(kInLinePolicyNames)
                           .show("Opposite keys", kGroupBehaviour,
                                 "with two opposite keys held: Use_Both (they cancel out) or "
                                 "Just_Use_Last (the last one wins)"));
        list.push_back(M::block<&SwipeholdConfigItem::target_point_input_compensatory_policy>(
                           kFieldTargetPointInputCompensatoryPolicy,
                           &TargetPointInputCompensatoryPolicy::Members)
                           .flag(kReadTwice)
                           .show("Target correction", kGroupAdvanced,
                                 "corrects the target point of a drag along a curve"));
        return M::table(
            "A drag steered by four direction keys, like a thumb on an on-screen stick. Valid "
            "when any direction key is set; its own `key` plays no part.",
            std::move(list), &ConfigItem::Members(), true);
    }();
    return table;
}

const MemberTable& FirstPointPolicy::Members() {
    using M = MembersOf<FirstPointPolicy>;
    static const MemberTable table = M::part(
        "first_point_policy", "how the first touch of a drag is made",
        {
            M::field<&FirstPointPolicy::handle_type>(kFieldHandleType)
                .require()
                .oneOf(kHandleTypeNames)
                .show("First touch", kGroupAdvanced,
                      "what the first touch does: Transparent (nothing), Click (a tap) or Move (a "
                      "drag)"),
            M::field<&FirstPointPolicy::interval>(kFieldInterval)
                .require()
                .in("ms")
                .show("Delay", kGroupAdvanced,
                      "time between pressing the key and the first touch, in milliseconds"),
            M::field<&FirstPointPolicy::period>(kFieldPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced,
                      "time between two steps of the first move, in milliseconds"),
            M::field<&FirstPointPolicy::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps the first move is made of"),
            M::field<&FirstPointPolicy::speed>(kFieldSpeed)
                .require()
                .in("%")
                .show("Speed", kGroupAdvanced,
                      "speed of the first move, in percent of the normal speed"),
            // Added to the format later; older documents lack them.
            M::field<&FirstPointPolicy::wait_for_second>(kFieldWaitForSecond)
                .in("ms")
                .show("Second key wait", kGroupAdvanced,
                      "how long to wait for a second direction key before moving, in "
                      "milliseconds"),
            M::field<&FirstPointPolicy::move_type>(kFieldMoveType)
                .oneOf(kMoveTypeNames)
                .show("Move speed", kGroupAdvanced,
                      "how the move's speed changes: Constant, Big_Variable or Small_Variable"),
            M::field<&FirstPointPolicy::idle_before_first_press>(kFieldIdleBeforeFirstPress)
                .in("ms")
                .show("First press delay", kGroupAdvanced,
                      "pause before the first press, in milliseconds"),
            M::field<&FirstPointPolicy::no_press_first_center_point>(kFieldNoPressFirstCenterPoint)
                .show("Skip centre press", kGroupAdvanced,
                      "whether the drag starts without pressing its centre first"),
        });
    return table;
}

const MemberTable& SubsequentPointPolicy::Members() {
    using M = MembersOf<SubsequentPointPolicy>;
    static const MemberTable table = M::part(
        "subsequent_point_policy", "how later touches of the same drag are made",
        {
            M::field<&SubsequentPointPolicy::handle_type>(kFieldHandleType)
                .require()
                .oneOf(kHandleTypeNames)
                .show("Later touches", kGroupAdvanced,
                      "what each later touch does: Transparent (nothing), Click (a tap) or Move "
                      "(a drag)"),
            M::field<&SubsequentPointPolicy::period>(kFieldPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced,
                      "time between two steps of a later move, in milliseconds"),
            M::field<&SubsequentPointPolicy::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps a later move is made of"),
        });
    return table;
}

const MemberTable& TargetPointInputCompensatoryPolicy::Members() {
    using M = MembersOf<TargetPointInputCompensatoryPolicy>;
    using P = TargetPointInputCompensatoryPolicy;
    static const MemberTable table = M::part(
        "target_point_input_compensatory_policy",
        "corrects the target point of a drag along a curve",
        {
            M::field<&P::enable>(kFieldEnable)
                .require()
                .show("Correction", kGroupAdvanced, "whether this block is in effect"),
            M::field<&P::period>(kFieldPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced,
                      "time between two correction steps, in milliseconds"),
            M::field<&P::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps of one correction"),
            M::field<&P::count>(kFieldCount)
                .require()
                .show("Count", kGroupAdvanced, "number of corrections"),
            M::field<&P::distance>(kFieldDistance)
                .require()
                .in("screen")
                .show("Distance", kGroupAdvanced,
                      "the correction's amplitude, as a fraction of the screen"),
            M::field<&P::x_policy>(kFieldXPolicy)
                .oneOf(kAxisPolicyNames)
                .show("Horizontal curve", kGroupAdvanced, "the horizontal correction curve"),
            M::field<&P::x_policy_slope_period>(kFieldXPolicySlopePeriod)
                .show("Horizontal slope", kGroupAdvanced,
                      "slope (X, X2) or period (Sin, Cos) of the horizontal curve"),
            M::field<&P::x_policy_intercept_phaseshift>(kFieldXPolicyInterceptPhaseshift)
                .show("Horizontal offset", kGroupAdvanced,
                      "intercept (X, X2) or phase shift (Sin, Cos) of the horizontal curve"),
            M::field<&P::y_policy>(kFieldYPolicy)
                .oneOf(kAxisPolicyNames)
                .show("Vertical curve", kGroupAdvanced, "the vertical correction curve"),
            M::field<&P::y_policy_slope_period>(kFieldYPolicySlopePeriod)
                .show("Vertical slope", kGroupAdvanced,
                      "slope (X, X2) or period (Sin, Cos) of the vertical curve"),
            M::field<&P::y_policy_intercept_phaseshift>(kFieldYPolicyInterceptPhaseshift)
                .show("Vertical offset", kGroupAdvanced,
                      "intercept (X, X2) or phase shift (Sin, Cos) of the vertical curve"),
        });
    return table;
}

}  // namespace zunokeymapmanager
