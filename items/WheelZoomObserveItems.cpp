//
// WheelZoomObserveItems.cpp
//

#include "zuno-keymapmanager/items/WheelZoomObserveItems.h"

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- WheelConfigItem ---------------------------------------------------------------

WheelConfigItem::WheelConfigItem() : PairConfigItem(std::string(TypeNameOf<WheelConfigItem>())) {
    positive_key.key = ConfigKey("keyboard", "Direction_up", 38, 328);
    negative_key.key = ConfigKey("keyboard", "Direction_down", 40, 336);
}

WheelConfigItem::~WheelConfigItem() = default;

ZUNO_KM_ITEM_JSON(WheelConfigItem)

const MemberTable& WheelConfigItem::Members() {
    using M = MembersOf<WheelConfigItem>;
    static const MemberTable table = M::table(
        "A wheel gesture driven by two opposite inputs. Never invalid; fires for either side.",
        {
            M::field<&WheelConfigItem::sensitivity>(kFieldSensitivity)
                .require()
                .in("%")
                .show("Sensitivity", kGroupBehaviour,
                      "distance of one wheel gesture, in percent (100: normal)"),
            M::field<&WheelConfigItem::duration>(kFieldDuration)
                .require()
                .in("ms")
                .show("Duration", kGroupBehaviour,
                      "how long one wheel gesture lasts, in milliseconds"),
            M::field<&WheelConfigItem::orientation>(kFieldOrientation)
                .require()
                .oneOf(kOrientationNames)
                .show("Orientation", kGroupBehaviour, "the direction of the gesture on the screen"),
        },
        &PairConfigItem::Members());
    return table;
}

// --- ZoomConfigItem ----------------------------------------------------------------

// The mouse wheel has scan codes of its own but no virtual key.
ZoomConfigItem::ZoomConfigItem() : PairConfigItem(std::string(TypeNameOf<ZoomConfigItem>())) {
    positive_key.key = ConfigKey("mouse", "wheel_up_mouse", -1, 548);
    negative_key.key = ConfigKey("mouse", "wheel_down_mouse", -1, 549);
}

ZoomConfigItem::~ZoomConfigItem() = default;

ZUNO_KM_ITEM_JSON(ZoomConfigItem)

const MemberTable& ZoomConfigItem::Members() {
    using M = MembersOf<ZoomConfigItem>;
    static const MemberTable table = M::table(
        "A pinch gesture driven by two opposite inputs. Never invalid; fires for either side.",
        {
            M::field<&ZoomConfigItem::sensitivity>(kFieldSensitivity)
                .require()
                .in("%")
                .show("Sensitivity", kGroupBehaviour,
                      "distance of one pinch, in percent (100: normal)"),
            M::field<&ZoomConfigItem::orientation>(kFieldOrientation)
                .require()
                .oneOf(kOrientationNames)
                .show("Orientation", kGroupBehaviour, "the direction of the gesture on the screen"),
            M::field<&ZoomConfigItem::duration>(kFieldDuration)
                .require()
                .in("ms")
                .show("Duration", kGroupBehaviour, "how long one pinch lasts, in milliseconds"),
            M::field<&ZoomConfigItem::one_side_gap>(kFieldOneSideGap)
                .size("finger gap", kRadius | kZeroMeans)
                .require()
                .in("screen")
                .show("Finger gap", kGroupPosition,
                      "gap between the two fingers of a pinch and its centre, as a fraction of "
                      "the screen"),
        },
        &PairConfigItem::Members());
    return table;
}

// --- ObserveConfigItem -------------------------------------------------------------

ObserveConfigItem::ObserveConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<ObserveConfigItem>())) {
    key = ConfigKey("keyboard", "Alt", 18, 56);
}

ZUNO_KM_ITEM_JSON(ObserveConfigItem)

const MemberTable& ObserveConfigItem::Members() {
    using M = MembersOf<ObserveConfigItem>;
    static const MemberTable table = M::table(
        "Looks around while a key is held, with separate horizontal and vertical "
        "sensitivities.",
        {
            M::field<&ObserveConfigItem::sensitivity_x>(kFieldSensitivityX)
                .require()
                .in("%")
                .show("Horizontal sensitivity", kGroupBehaviour,
                      "horizontal sensitivity, in percent (100: one pointer pixel moves one "
                      "screen pixel)"),
            M::field<&ObserveConfigItem::sensitivity_y>(kFieldSensitivityY)
                .require()
                .in("%")
                .show("Vertical sensitivity", kGroupBehaviour,
                      "vertical sensitivity, in percent (100: one pointer pixel moves one screen "
                      "pixel)"),
            M::field<&ObserveConfigItem::sensitivity>(kFieldSensitivity)
                .require()
                .show("Sensitivity", kGroupBehaviour,
                      "overall factor of the look (1.0: unchanged)"),
        },
        &ComposableConfigItem::Members());
    return table;
}

}  // namespace zunokeymapmanager
