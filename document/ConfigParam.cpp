//
// ConfigParam.cpp
//

#include "zuno-keymapmanager/document/ConfigParam.h"

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

const MemberTable& wheelPolicyMembers() {
    using M = MembersOf<ConfigParam>;
    static const MemberTable table = M::table(
        "how wheel and zoom gestures move their touch points",
        {
            M::field<&ConfigParam::zoom_first_interval>(kFieldZoomFirstPointInterval)
                .require()
                .in("ms")
                .show("First step pause", kGroupAdvanced,
                      "pause before the first zoom step, in milliseconds"),
            M::field<&ConfigParam::zoom_last_idle>(kFieldZoomLastPointIdle)
                .require()
                .in("ms")
                .show("Last touch hold", kGroupAdvanced,
                      "how long the last zoom touch is held before release, in milliseconds"),
            M::field<&ConfigParam::zoom_period>(kFieldZoomPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced, "time between two zoom steps, in milliseconds"),
            M::field<&ConfigParam::zoom_steps>(kFieldZoomSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps one zoom gesture is made of"),
            M::field<&ConfigParam::zoom_margin>(kFieldZoomMargin)
                .require()
                .in("px")
                .show("Margin", kGroupAdvanced,
                      "distance kept from the screen's edges by zoom touches, in pixels"),
            M::field<&ConfigParam::zoom_step_distance>(kFieldZoomStepDistance)
                .require()
                .in("screen")
                .show("Zoom step", kGroupAdvanced,
                      "distance covered by one zoom step, as a fraction of the screen"),
            M::field<&ConfigParam::wheel_step_distance>(kFieldWheelStepDistance)
                .require()
                .in("screen")
                .show("Wheel step", kGroupAdvanced,
                      "distance covered by one wheel step, as a fraction of the screen"),
        });
    return table;
}

const MemberTable& transparentWheelMembers() {
    using M = MembersOf<ConfigParam>;
    static const MemberTable table =
        M::table("how a passed-through wheel is forwarded",
                 {
                     M::field<&ConfigParam::sensitivity>(kFieldSensitivity)
                         .show("Wheel factor", kGroupAdvanced,
                               "factor applied to passed-through wheel turns (1.0: unchanged)"),
                     M::field<&ConfigParam::protocol_version>(kFieldProtocolVersion)
                         .show("Protocol", kGroupAdvanced,
                               "version of the host's wheel forwarding protocol (0: the first)"),
                 });
    return table;
}

}  // namespace

void ConfigParam::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ReadMembers(Members(), this, object);
}

Poco::JSON::Object ConfigParam::ConvertToJsonObject(bool isJoystick) const {
    Poco::JSON::Object result;
    if (!isJoystick) {
        WriteMembers(Members(), this, result);
    }
    return result;
}

const MemberTable& ConfigParam::Members() {
    using M = MembersOf<ConfigParam>;
    static const MemberTable table = M::part(
        "param", "gesture tuning of the whole document; written as {} for gamepad documents",
        {
            M::group(kFieldWheelPolicy, &wheelPolicyMembers)
                .show("Wheel and zoom", kGroupAdvanced,
                      "how wheel and zoom gestures move their touch points"),
            M::group(kFieldTransparentWheelPolicy, &transparentWheelMembers)
                .show("Wheel pass-through", kGroupAdvanced,
                      "how a passed-through wheel is forwarded"),
        });
    return table;
}

}  // namespace zunokeymapmanager
