//
// WalkItems.cpp
//
// Every member of these items is required on reading: the items are only
// usable with the full set of values.
//

#include "zuno-keymapmanager/items/WalkItems.h"

#include "items/ItemPartsIO.h"
#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- JoystickLeftWalkConfigItem ----------------------------------------------------

JoystickLeftWalkConfigItem::JoystickLeftWalkConfigItem()
    : ConfigItem(std::string(TypeNameOf<JoystickLeftWalkConfigItem>())) {
    key = ConfigKey("joystick", "Left_Stick", kUnsetKeyCode, kUnsetKeyCode);
}

JoystickLeftWalkConfigItem::~JoystickLeftWalkConfigItem() = default;

ZUNO_KM_ITEM_JSON(JoystickLeftWalkConfigItem)

const MemberTable& JoystickLeftWalkConfigItem::Members() {
    using M = MembersOf<JoystickLeftWalkConfigItem>;
    static const MemberTable table = M::table(
        "Walks with the gamepad's left stick.",
        {
            M::field<&JoystickLeftWalkConfigItem::rel_radius>(kFieldRelRadius)
                .size("stick radius", kRadius)
                .require()
                .in("screen")
                .show("Walk radius", kGroupPosition,
                      "how far the stick walks from the work position, as a fraction of the "
                      "screen; 0 leaves no room to walk"),
        },
        &ConfigItem::Members());
    return table;
}

// --- JoystickRightEyeConfigItem ----------------------------------------------------

JoystickRightEyeConfigItem::JoystickRightEyeConfigItem()
    : ConfigItem(std::string(TypeNameOf<JoystickRightEyeConfigItem>())) {
    key = ConfigKey("joystick", "Right_Stick", kUnsetKeyCode, kUnsetKeyCode);
}

JoystickRightEyeConfigItem::~JoystickRightEyeConfigItem() = default;

ZUNO_KM_ITEM_JSON(JoystickRightEyeConfigItem)

const MemberTable& JoystickRightEyeConfigItem::Members() {
    using M = MembersOf<JoystickRightEyeConfigItem>;
    static const MemberTable table = M::table(
        "Looks around with the gamepad's right stick.",
        {
            M::field<&JoystickRightEyeConfigItem::sensitivity>(kFieldSensitivity)
                .require()
                .in("%")
                .show("Sensitivity", kGroupBehaviour,
                      "how far a full stick deflection looks, in percent (100: normal)"),
            M::field<&JoystickRightEyeConfigItem::staring_range>(kFieldStaringRange)
                .size("look area", kArea)
                .require()
                .show("Look range", kGroupPosition, "the part of the screen the look may move in"),
            M::group(kFieldResetPolicy, &parts::ResetPolicyMembers<JoystickRightEyeConfigItem>)
                .require()
                .show("Reset", kGroupBehaviour, "when and where the look returns to its centre"),
        },
        &ConfigItem::Members());
    return table;
}

// --- MouseRightWalkConfigItem ------------------------------------------------------

MouseRightWalkConfigItem::MouseRightWalkConfigItem()
    : ConfigItem(std::string(TypeNameOf<MouseRightWalkConfigItem>())) {
    key = ConfigKey("mouse", "right_mouse", 2, 2);
}

MouseRightWalkConfigItem::~MouseRightWalkConfigItem() = default;

ZUNO_KM_ITEM_JSON(MouseRightWalkConfigItem)

const MemberTable& MouseRightWalkConfigItem::Members() {
    using M = MembersOf<MouseRightWalkConfigItem>;
    static const MemberTable table = M::table(
        "Walks towards the pointer while a mouse button is held.",
        {
            M::field<&MouseRightWalkConfigItem::rel_measurement_pos>(kFieldRelMeasurementPos)
                .require()
                .point("measurement point", 0)
                .show("Measurement point", kGroupPosition,
                      "the point the walk direction is measured from"),
            M::field<&MouseRightWalkConfigItem::duration_factor>(kFieldDurationFactor)
                .require()
                .show("Duration factor", kGroupBehaviour,
                      "how long a walk move lasts for a given pointer distance (0.5: half as "
                      "long as the distance in pixels, in milliseconds)"),
            M::block<&MouseRightWalkConfigItem::first_move_policy>(kFieldFirstMovePolicy,
                                                                   &FirstMovePolicy::Members)
                .require()
                .show("First move", kGroupAdvanced, "how the first walk move is made"),
        },
        &ConfigItem::Members());
    return table;
}

const MemberTable& FirstMovePolicy::Members() {
    using M = MembersOf<FirstMovePolicy>;
    static const MemberTable table = M::part(
        "first_move_policy", "how the first walk move is made",
        {
            M::field<&FirstMovePolicy::interval>(kFieldInterval)
                .require()
                .in("ms")
                .show("Delay", kGroupAdvanced,
                      "time between pressing the button and the first move, in milliseconds"),
            M::field<&FirstMovePolicy::period>(kFieldPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced,
                      "time between two steps of the first move, in milliseconds"),
            M::field<&FirstMovePolicy::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps the first move is made of"),
            M::field<&FirstMovePolicy::speed>(kFieldSpeed)
                .require()
                .in("%")
                .show("Speed", kGroupAdvanced,
                      "speed of the first move, in percent of the normal speed"),
            M::field<&FirstMovePolicy::rel_radius>(kFieldRelRadius)
                .size("first move radius", kRadius | kZeroMeans)
                .require()
                .in("screen")
                .show("Radius", kGroupAdvanced,
                      "radius of the first move, as a fraction of the screen"),
        });
    return table;
}

}  // namespace zunokeymapmanager
